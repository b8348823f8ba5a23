// Log-ins and the pool of idle ones. A log-in is lent to a connection, a record set or a command and comes back when
// that is closed; the next one with the same connection string gets it without a new log-in.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ado/types/Provider.h"
#include "platform/Error.h"

namespace varnel {

/// The providers that connection strings are tried against, in this order. The two programs call it when they start,
/// tests may hand other ones. The providers must live as long as the program. Empties the pool.
void SetProviders(std::vector<const Provider*> providers);

/// A log-in on loan. Destroying it gives the log-in back to the pool, or drops it when it is broken.
class SessionLease {
public:
    /// Takes an idle log-in with the same string that still lives, else logs in.
    /// Throws Error: the string's syntax, "Provider cannot be found…", or the provider's words without passwords.
    explicit SessionLease(const std::string& connectionString);
    ~SessionLease();
    SessionLease(const SessionLease&) = delete;
    SessionLease& operator=(const SessionLease&) = delete;

    const std::string& ConnectionText() const { return key_; }
    /// Runs a step on the session; an Error of kind Connection marks the log-in as broken, so that it is not pooled.
    template <class Step>
    auto Guarded(Step&& step) {
        try {
            return step(*session_);
        } catch (const Error& error) {
            NoteFailure(error);
            throw;
        }
    }

private:
    void NoteFailure(const Error& error);

    std::string key_;
    std::unique_ptr<ProviderSession> session_;
    bool broken_ = false;
};

/// Ends all idle log-ins. Called at the end of a run and by tests.
void CloseIdleSessions();
/// How many log-ins are idle, and how many were made since the program started; for tests.
std::size_t IdleSessionCount();
std::size_t LogInCount();

}  // namespace varnel
