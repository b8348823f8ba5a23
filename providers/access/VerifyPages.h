// The checks that are made of single pages and maps, whoever uses them.
#pragma once

#include <optional>
#include <string>

#include "providers/access/DataPage.h"
#include "providers/access/VerifyContext.h"

namespace varnel::access {

/// A page of rows and its pin.
struct VerifiedPage {
    PagePin pin;
    DataPage rows;
};

/// Reads a page of rows, checks its type, slots, free space and owner. place: "Table 'A', page 7". Nothing when the
/// rows cannot be read.
std::optional<VerifiedPage> VerifyRowPage(VerifyContext& context, PageNumber page, std::uint32_t owner,
                                          const std::string& place);

/// The same page once more, of one that was found to be readable.
VerifiedPage OpenRowPage(VerifyContext& context, PageNumber page);

/// Enters a usage map, its page and its pages of bits into the ledger and returns the pages it names. what: "the data
/// of table 'A'". claimPages: these are entered too. No map, or one that cannot be read: empty.
PageSet VerifyMap(VerifyContext& context, RowPointer map, const std::string& what, bool claimPages);

/// Enters the pages of bits of a reference map that ReadUsageMap could read.
void ClaimBitmapPages(VerifyContext& context, RowPointer map, PageLedger::Use use);

}  // namespace varnel::access
