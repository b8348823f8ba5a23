#include "providers/sql/SqlFunctions.h"

#include <memory>

#include "platform/CodePage.h"
#include "providers/sql/ExpressionProgram.h"
#include "providers/sql/ExpressionValues.h"
#include "providers/sql/SqliteHandle.h"

namespace varnel::sql {
namespace {

/// No exception crosses into SQLite: it becomes the statement's failure.
template <class Body>
void Guard(sqlite3_context* context, Body&& body) noexcept {
    try {
        body();
    } catch (const std::exception& failure) {
        sqlite3_result_error(context, failure.what(), -1);
    }
}

ExpressionProgram* ProgramOf(sqlite3_context* context, sqlite3_value** arguments) {
    auto* program = static_cast<ExpressionProgram*>(sqlite3_value_pointer(arguments[0], kProgramPointer));
    if (program == nullptr) sqlite3_result_error(context, "varnel functions cannot be called from SQL", -1);
    return program;
}

void ReturnValue(sqlite3_context* context, const Value& value, Affinity affinity) {
    std::string scratch;
    ReturnForm(context, StoreValue(value, affinity, scratch));
}

void ValueFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    Guard(context, [&] {
        ExpressionProgram* program = ProgramOf(context, arguments);
        if (program != nullptr) ReturnValue(context, program->Run(arguments + 1), program->resultAffinity);
    });
}

void FoldFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) != SQLITE_TEXT) return sqlite3_result_value(context, arguments[0]);
    Guard(context, [&] {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
        const auto size = static_cast<std::size_t>(sqlite3_value_bytes(arguments[0]));
        const std::string folded = FoldCase({text == nullptr ? "" : text, size});
        sqlite3_result_text64(context, folded.data(), folded.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    });
}

enum class Aggregate { Sum, Average, Least, Greatest };

/// What an aggregate has seen so far; Null values do not count.
struct Seen {
    std::int64_t count = 0;
    Value result;

    void Add(Aggregate kind, const Value& value, const ExpressionRules& rules) {
        if (value.IsNull()) return;
        if (++count == 1) {
            if (kind == Aggregate::Sum || kind == Aggregate::Average)
                rules.calculate(Operator::Add, Value::OfInteger(0), value, result);
            else
                result = value;
            return;
        }
        if (kind == Aggregate::Sum || kind == Aggregate::Average) {
            Value sum;
            rules.calculate(Operator::Add, result, value, sum);
            std::swap(result, sum);
            return;
        }
        const int order = rules.compare(value, result).value_or(0);
        if (kind == Aggregate::Least ? order < 0 : order > 0) result = value;
    }
};

void StepFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
    Guard(context, [&] {
        ExpressionProgram* program = ProgramOf(context, arguments);
        // SQLite's memory of the group holds one pointer; FinalFunction owns what it points to.
        // NOLINTNEXTLINE(bugprone-sizeof-expression): the size of the pointer itself is meant
        auto** seen = static_cast<Seen**>(sqlite3_aggregate_context(context, sizeof(Seen*)));
        if (program == nullptr || seen == nullptr) return;
        if (*seen == nullptr) *seen = std::make_unique<Seen>().release();
        const auto kind = *static_cast<const Aggregate*>(sqlite3_user_data(context));
        (*seen)->Add(kind, program->Run(arguments + 1), *program->rules);
    });
}

void FinalFunction(sqlite3_context* context) {
    auto** state = static_cast<Seen**>(sqlite3_aggregate_context(context, 0));
    if (state == nullptr || *state == nullptr) return sqlite3_result_null(context);
    const std::unique_ptr<Seen> seen(*state);
    Guard(context, [&] {
        const auto kind = *static_cast<const Aggregate*>(sqlite3_user_data(context));
        if (seen->count == 0) return sqlite3_result_null(context);
        if (kind == Aggregate::Average)
            return sqlite3_result_double(context, NumberOf(seen->result) / static_cast<double>(seen->count));
        ReturnValue(context, seen->result, Affinity::Blob);
    });
}

constexpr Aggregate kSum = Aggregate::Sum, kAverage = Aggregate::Average, kLeast = Aggregate::Least,
                    kGreatest = Aggregate::Greatest;

struct AggregateName {
    const char* name;
    const Aggregate* kind;
};
constexpr AggregateName kAggregates[] = {
    {"varnel_sum", &kSum}, {"varnel_avg", &kAverage}, {"varnel_min", &kLeast}, {"varnel_max", &kGreatest}};

}  // namespace

void RegisterFunctions(sqlite3* database) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;
    int code = sqlite3_create_function_v2(database, "varnel_value", -1, kFlags, nullptr, ValueFunction, nullptr,
                                          nullptr, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_create_function_v2(database, "varnel_fold", 1, kFlags, nullptr, FoldFunction, nullptr, nullptr,
                                          nullptr);
    for (const AggregateName& aggregate : kAggregates) {
        if (code != SQLITE_OK) break;
        code = sqlite3_create_function_v2(database, aggregate.name, -1, kFlags, const_cast<Aggregate*>(aggregate.kind),
                                          nullptr, StepFunction, FinalFunction, nullptr);
    }
    if (code != SQLITE_OK) throw SqliteError(database, code, "");
}

}  // namespace varnel::sql
