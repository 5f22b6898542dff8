#include "Faults.h"

using namespace Stand_Fields::Paging;

namespace {

constexpr const char *names[] = {
    "request or push lost",
    "answer delayed",
    "message twice",
    "push overtaken",
    "time-out before a change was applied",
    "time-out after a change was applied",
    "other status",
    "truncated page",
    "empty page",
    "repeated page",
    "error text with rows",
    "wrong first row",
    "push before the answer",
    "push between pages",
    "push for an unknown symbol",
    "push with equal time",
    "push with older time",
    "missing fields",
    "wrong types",
    "subscription refused",
    "reconnected during a load",
    "refreshed during a load",
    "products changed during a load",
    "answer of an account no longer enabled",
};
static_assert(std::size(names) == size_t(Fault::Count));

void refuse(MessageBody &answer, const QString &status, const QString &text)
{
    answer.values.insert(Orvane_Fields::System::requestExeStatus, status);
    answer.values.insert(Orvane_Fields::System::textDescription, text);
}

/// What else a value may look like on the wire.
QVariant ofOtherType(const QVariant &value, Chance &chance)
{
    switch (chance.upTo(4)) {
    case 0:
        return value.toString();
    case 1:
        return QVariant();
    case 2:
        return QVariantList{value};
    default:
        return value.type() == QVariant::String ? QVariant(chance.upTo(9)) : QVariant(QString());
    }
}

VariantRecord::iterator someField(VariantRecord &row, Chance &chance)
{
    return row.isEmpty() ? row.end() : std::next(row.begin(), chance.upTo(row.size()));
}

} // namespace

const char *Faults::name(Fault fault)
{
    return names[size_t(fault)];
}

void Faults::spoil(Fault fault, MessageBody &answer, Chance &chance)
{
    if (spoils(fault, answer, chance))
        struck(fault);
}

bool Faults::spoils(Fault fault, MessageBody &answer, Chance &chance)
{
    const bool isPaged = answer.values.contains(position);
    switch (fault) {
    case Fault::OtherStatus:
        refuse(answer, chance.of({"processing", "", "SUCCESS"}), {});
        return true;
    case Fault::ErrorTextWithRows:
        refuse(answer, Rows::Fail, QStringLiteral("refused, with rows"));
        return !answer.rows.isEmpty();
    case Fault::TruncatedPage:
        if (answer.rows.isEmpty())
            return false;
        answer.rows = answer.rows.mid(0, chance.upTo(answer.rows.size()));
        return true;
    case Fault::EmptyPage: {
        const bool hadRows = !answer.rows.isEmpty();
        answer.rows.clear();
        return isPaged && hadRows;
    }
    case Fault::RepeatedPage:
        if (!isPaged)
            return false;
        answer.values.insert(hasMore, true);
        answer.values.insert(position, QStringLiteral("0"));
        return true;
    case Fault::WrongFirstRow:
        if (isPaged || answer.rows.isEmpty())
            return false;
        answer.rows.removeFirst();
        return true;
    default:
        break;
    }
    if (answer.rows.isEmpty())
        return false;
    VariantRecord &row = answer.rows[chance.upTo(answer.rows.size())];
    const auto field = someField(row, chance);
    if (field == row.end())
        return false;
    if (fault == Fault::MissingFields) {
        row.erase(field);
        return true;
    }
    const QVariant before = *field;
    *field = ofOtherType(before, chance);
    return field->userType() != before.userType();
}
