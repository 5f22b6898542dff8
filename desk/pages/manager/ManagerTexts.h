#pragma once

#include "VariantRecord.h"

#include <QtCore/QStringList>

/// What several views of the manager page write the same way.
namespace ManagerTexts {

QString trader(const QString &traderId);         ///< name and id; the public pool in words
QString account(const QString &tradingAccount);  ///< text and id
QString security(const VariantRecord &row);      ///< symbol and name
QString product(const QString &productAccount);  ///< id and text
QString assetProp(const QString &assetProperty); ///< in words

} // namespace ManagerTexts
