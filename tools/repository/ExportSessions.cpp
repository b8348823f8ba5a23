#include <cstdio>
#include <limits>
#include <set>

#include "ado/Ado.h"
#include "ado/types/ValueConvert.h"
#include "ado/types/ValueText.h"
#include "tools/output/Printing.h"
#include "tools/output/PrivateFile.h"
#include "tools/repository/ExportText.h"
#include "tools/repository/OpenRepository.h"
#include "tools/repository/Repository.h"

namespace varnel::admin {
namespace {

void Note(const std::string& text) {
    std::fprintf(stderr, "varnel-admin: note: %s\n", text.c_str());
}

/// The numbers that can be run at all, in ascending order.
std::set<std::int16_t> AllSessions(const Connection& repository) {
    using Id = std::numeric_limits<std::int16_t>;
    std::set<std::int16_t> ids;
    Recordset rows;
    rows.Open("SELECT sessionid FROM sessions", repository);
    for (; !rows.Eof(); rows.MoveNext()) {
        const Value& value = rows.Fields(0).GetValue();
        const double id = value.IsNull() ? 0.5 : ToDouble(value);
        if (id >= Id::min() && id <= Id::max() && id == static_cast<std::int16_t>(id))
            ids.insert(static_cast<std::int16_t>(id));
        else
            Note("a session with the number " + (value.IsNull() ? "Null" : DefaultText(value)) +
                 " is left out; numbers go from -32768 to 32767");
    }
    return ids;
}

std::string TextOf(std::int16_t id, const Connection& repository, const ExportOrder& order) {
    const StoredRows rows = KeepRows(repository, id);
    RequireSession(rows, id, order.repository);
    const std::string name = "session " + std::to_string(id);
    try {
        ExportedSession exported = ExportText(rows, order.passwords);
        for (std::string& note : exported.notes) Note(note.insert(0, name + ": "));
        return exported.text;
    } catch (const Error& error) {
        throw Error(error.kind, name, name + " cannot be exported: " + error.what());
    }
}

}  // namespace

void ExportSessions(const ExportOrder& order) {
    const Connection repository = OpenRepository(order.repository);
    std::set<std::int16_t> ids(order.sessions.begin(), order.sessions.end());
    if (order.all) ids = AllSessions(repository);
    std::string text;
    for (const std::int16_t id : ids) text += (text.empty() ? "" : "\n") + TextOf(id, repository, order);
    if (order.output.empty()) {
        Print(text);
        FinishPrinting();
    } else {
        WritePrivateFile(order.output, text, order.replace);
    }
}

}  // namespace varnel::admin
