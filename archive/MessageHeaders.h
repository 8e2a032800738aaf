#pragma once

#include "mail/HeaderFields.h"
#include "messages/MessageRow.h"

namespace quellbox {

/// Fills the texts of a row. Those of a message that was not loaded only get its error text as subject, and the answer
/// is false.
bool FillTexts(MessageTexts& texts, HeaderFields fields);

} // namespace quellbox
