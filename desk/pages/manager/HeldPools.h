#pragma once

#include "ChangeOutcome.h"
#include "PoolEdit.h"
#include "VariantRecord.h"

/// The pools of one resource, as the library holds them and as the server has them, and what is sent to change them.
/// resource: a record of the facade. What blocks is called off the GUI thread.
namespace HeldPools {

qint64 resourceQty(const VariantRecord &resource);
qint64 unitOf(const VariantRecord &resource); ///< display units of one server unit

PoolEdit::ServerPools known(const VariantRecord &resource); ///< from memory

/// Asks the server; blocks. None, and errorText, when it did not answer.
std::optional<PoolEdit::ServerPools> read(const VariantRecord &resource, QString &errorText);

/// Sends one step; blocks.
ChangeOutcome send(const PoolEdit::Step &step, const VariantRecord &resource, const PoolEdit::ServerPools &server);

} // namespace HeldPools
