#pragma once

#include "mail/HeaderFields.h"
#include "messages/MessageRow.h"

namespace quellbox {

/// Text of the "SCL%" column: what precedes the first per cent sign of X-SCL; without X-SCL, of X-SMSMSE-SCL with a
/// per cent sign added. Empty when X-SCL holds no such sign.
QString SclText(const HeaderFields& fields);

/// Fills the texts of a row. Those of a message that was not loaded only get its error text as subject, and the answer
/// is false.
bool FillTexts(MessageTexts& texts, HeaderFields fields);

} // namespace quellbox
