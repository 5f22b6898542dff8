#pragma once

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

/// One row of data: field name to value. Field names are the host's constants (MasterFields.h,
/// OrvaneFields.h), never literals. A missing field reads as an invalid QVariant: 0 or empty text.
using VariantRecord = QMap<QString, QVariant>;

/// A list of rows; its meta-type name is "QList<QVariantMap>".
using RecordList = QList<VariantRecord>;
