#pragma once

#include "mail/HeaderFields.h"
#include "messages/MessageRow.h"

namespace quellbox {

/// Text of the "SCL%" column: what precedes the first per cent sign of X-SCL; without X-SCL, of X-SMSMSE-SCL with a
/// per cent sign added. Empty when X-SCL holds no such sign.
QString SclText(const HeaderFields& fields);

/// Fills "To", "From", "Subject", "SCL%" and the tag of a row. A message that was not loaded only gets its error text
/// as subject, and the answer is false.
bool FillRow(MessageRow& row, const HeaderFields& fields);

} // namespace quellbox
