#include "ado/SessionLease.h"

#include <algorithm>

namespace varnel {

namespace {

/// Idle log-ins kept at most; a run rarely needs more than a source, a target and a repository.
constexpr std::size_t kMaxIdleSessions = 8;

struct IdleSession {
    std::string key;
    std::unique_ptr<ProviderSession> session;
};

/// The pool's state. Written by leases and SetProviders only.
struct Pool {
    std::vector<const Provider*> providers;
    std::vector<IdleSession> idle;  // the longest idle first
    std::size_t logIns = 0;
};

Pool& ThePool() {
    static Pool pool;
    return pool;
}

std::unique_ptr<ProviderSession> TakeIdle(const std::string& key) {
    auto& idle = ThePool().idle;
    while (true) {
        const auto newest =
            std::find_if(idle.rbegin(), idle.rend(), [&](const IdleSession& entry) { return entry.key == key; });
        if (newest == idle.rend()) return nullptr;
        auto session = std::move(newest->session);
        idle.erase(std::next(newest).base());
        if (session->Alive()) return session;
    }
}

std::unique_ptr<ProviderSession> LogIn(const ConnectionString& text) {
    for (const Provider* provider : ThePool().providers) {
        if (!provider->Accepts(text)) continue;
        ++ThePool().logIns;
        try {
            return provider->Open(text);
        } catch (const Error& error) {
            throw Error(error.kind, error.where, text.Redact(error.what()));
        }
    }
    const std::string named = text.Provider().empty() ? text.Driver() : text.Provider();
    throw Error(ErrorKind::NotSupported, named,
                named.empty() ? "Provider cannot be found. The connection string names neither a Provider nor a Driver."
                              : "Provider cannot be found. It may not be properly installed: '" + named + "'");
}

}  // namespace

void SetProviders(std::vector<const Provider*> providers) {
    CloseIdleSessions();
    ThePool().providers = std::move(providers);
}

SessionLease::SessionLease(const std::string& connectionString)
    : key_(connectionString), session_(TakeIdle(connectionString)) {
    if (!session_) session_ = LogIn(ConnectionString(connectionString));
}

SessionLease::~SessionLease() {
    if (broken_ || !session_->Reset()) return;
    auto& idle = ThePool().idle;
    if (idle.size() >= kMaxIdleSessions) idle.erase(idle.begin());
    idle.push_back({std::move(key_), std::move(session_)});
}

void SessionLease::NoteFailure(const Error& error) {
    broken_ |= error.kind == ErrorKind::Connection;
}

void CloseIdleSessions() {
    ThePool().idle.clear();
}

std::size_t IdleSessionCount() {
    return ThePool().idle.size();
}

std::size_t LogInCount() {
    return ThePool().logIns;
}

}  // namespace varnel
