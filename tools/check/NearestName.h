// The name that somebody who wrote another one probably meant.
#pragma once

#include <string>
#include <vector>

namespace varnel::admin {

/// The name with the fewest letters changed, without regard to case; "" when none comes close.
std::string NearestName(const std::string& written, const std::vector<std::string>& names);
/// "did you mean 'Customers'? ", or "" without a near one.
std::string DidYouMean(const std::string& written, const std::vector<std::string>& names);
/// "'a', 'b', 'c' and 4 more"; "none" for an empty list.
std::string ShortList(const std::vector<std::string>& names);

}  // namespace varnel::admin
