// The one exception type of the program. Everything below the load engine reports a failure by throwing it; what() is
// the description that the session log, the window and the error log show, so it is written for their reader.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace varnel {

/// What sort of failure it was; decides nothing but tests and remedies. The text is for people.
enum class ErrorKind {
    Io,            ///< a file or folder could not be opened, read or written
    Connection,    ///< a server could not be reached, refused the log-in, or was lost
    Corrupt,       ///< stored bytes contradict their format
    NotSupported,  ///< understood, but not something this program does
    Syntax,        ///< a statement, connection string or definition that cannot be read
    Constraint,    ///< the database refused a row or a statement (duplicate key, missing table, value out of range)
    Conversion,    ///< a value does not convert to the type asked for
    Misuse         ///< an operation on an object that is not in the state for it
};

class Error : public std::runtime_error {
public:
    /// errorKind: see above. place: the file, table, column or statement concerned; may be empty, and is not part of
    /// what(). text: the whole description, complete without the place.
    Error(ErrorKind errorKind, std::string place, const std::string& text)
        : std::runtime_error(text), kind(errorKind), where(std::move(place)) {}

    ErrorKind kind;
    std::string where;
};

}  // namespace varnel
