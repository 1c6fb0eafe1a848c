#ifndef VARNEL_PLATFORM_FILTER_VALUES_H
#define VARNEL_PLATFORM_FILTER_VALUES_H

#include <cstddef>
#include <utility>
#include <vector>

#include "filter_text.h"

namespace LOG_FILTER {

/// Parts of a text to mask, each from one byte up to another.
using Secrets = std::vector<std::pair<size_t, size_t>>;

/// Finds the values of keys and options and the passwords of TL1 commands, in linear time.
///
/// @param isMarkup  whether quotes outside of tags are ordinary characters: in <a>rock 'n roll</a><u pwd=' x'/> only
/// the
///                  last two belong together.
void FindValues(const FilterText& text, bool isMarkup, Secrets& secrets);

}  // namespace LOG_FILTER

#endif
