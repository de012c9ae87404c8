#pragma once

#include "platform/SocMwTypes.h"

#include <memory>
#include <vector>

namespace desktop {

/// The entries of a list that pages are cut from.
using EntryList = std::shared_ptr<const std::vector<FolderFileInfo_s>>;

/// Page @p page, from 0, of @p entries, @p itemsPerPage to a page; below 1 puts all on one page. Empty beyond the end.
std::vector<FolderFileInfo_s> cutPage(const std::vector<FolderFileInfo_s>& entries, int page, int itemsPerPage);

} // namespace desktop
