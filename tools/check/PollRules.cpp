#include "tools/check/PollRules.h"

#include <algorithm>

#include "ado/types/ConnectionString.h"
#include "ado/types/ValueText.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"
#include "platform/StoredPath.h"
#include "platform/Wildcard.h"
#include "tools/check/Side.h"

namespace varnel::admin {
namespace {

std::string WithoutSeparator(std::string path) {
    while (path.size() > 1 && (path.ends_with('\\') || path.ends_with('/'))) path.pop_back();
    return path;
}

void CheckPlace(Findings& found) {
    const std::string& folder = SessionDef.FolderName;
    try {
        if (!FolderExists(folder)) {
            found.Fault("FolderName", "the polled folder '" + folder + "' does not exist",
                        "make it, or correct FolderName");
            return;
        }
        if (!ReadsWherePolled())
            found.Fault("FolderName",
                        "files are listed in '" + folder + "' and read from '" +
                            PlaceOf(SessionDef.SourceConnStr).path + "', the folder of the connection string",
                        "write the same folder in both");
        const std::string why = WhyNotWritable(WithoutSeparator(folder) + "/Schema.ini");
        if (!why.empty())
            found.Fault("FolderName", "Schema.ini cannot be written into the folder: " + why,
                        "allow writing into the folder and to its Schema.ini");
    } catch (const Error& error) {
        found.Fault("FolderName", std::string("the polled folder cannot be looked at: ") + error.what(),
                    "correct FolderName and the connection string");
    }
}

/// A name that the pattern matches.
std::string SampleName(std::string pattern) {
    std::replace_if(
        pattern.begin(), pattern.end(), [](char c) { return c == '*' || c == '?'; }, 'x');
    return pattern;
}

}  // namespace

bool ReadsWherePolled() {
    const FilePlace place = PlaceOf(SessionDef.SourceConnStr);
    return !place.isFiles ||
           LocalPath(WithoutSeparator(place.path)) == LocalPath(WithoutSeparator(SessionDef.FolderName));
}

void CheckPolledFolder(Findings& found) {
    CheckPlace(found);
    const std::string& pattern = SessionDef.FPattern;
    const std::string sample = SampleName(pattern);
    const std::string renamed = sample + "." + SessionDef.FRename + "_On_" + FileStamp(Now());
    if (MatchesWildcard(renamed, pattern))
        found.Warning("FPattern",
                      "the pattern '" + pattern + "' matches the new names of loaded files too (" + renamed +
                          "): every run loads all files again",
                      "use a pattern that ends with the extension, such as *.csv");
    if (MatchesWildcard("Schema.ini", pattern))
        found.Warning("FPattern", "the pattern '" + pattern + "' matches Schema.ini, which is then loaded as data",
                      "use a pattern with the extension of the files, such as *.csv");
    if (SessionDef.TargetDBName == "TEXT")
        found.Warning("", "files exported from a polled folder all go to one output file, and none is renamed",
                      "use a session of kind TEXT with a table per file");
}

void CheckPolledFiles(const std::vector<TableFacts>& tables, Findings& found) {
    found.Note("", "the types of the files' columns are found from all values of each file at each run",
               "--values shows what does not fit now");
    if (tables.size() < 2) return;
    const std::string files = std::to_string(tables.size()) + " files go to '" + tables[0].To().TableName + "'";
    if (tables[0].preparation == Preparation::Create)
        found.Fault("TableExists", files + ", and each of them makes the table: only the first one is loaded",
                    "make the table first, then use exists = true with option APPEND");
    if (tables[0].preparation == Preparation::Empty || tables[0].preparation == Preparation::DropAndCreate)
        found.Warning("LoadOption", files + ", and each of them removes the rows of the one before",
                      "use the option APPEND");
    const std::int16_t number = tables[0].From().TabID;
    if (number > 0 && static_cast<std::size_t>(number) < tables.size())
        found.Fault("TabID",
                    "the template has the number " + std::to_string(number) + ", which file " +
                        std::to_string(number + 1) + " gets too: both are read with double columns",
                    "give the template the number 0, or one above the number of files");
}

}  // namespace varnel::admin
