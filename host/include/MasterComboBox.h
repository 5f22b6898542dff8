#pragma once

#include "IHSkin.h"
#include "IMasterShortCut.h"
#include "InputStatusStyle.h"

#include <QtCore/QStringList>
#include <QtWidgets/QComboBox>

/// A choice of one item that can be searched. With search on, typing lists the items that hold the typed text
/// anywhere, upper or lower case, or have it in their PinyinInitials. Down and Up walk the list (or open it), Enter
/// takes the marked item, or the first, Tab the marked one, Escape restores the choice. The choice, currentIndex(),
/// changes only when an item is taken: never while typing, and never by a text that fits no item. GUI thread only.
class T0_HOST_EXPORT MasterComboBox : public QComboBox, public IHSkin, public IMasterShortCut, public InputStatusStyle
{
    Q_OBJECT

public:
    explicit MasterComboBox(QWidget *parent = nullptr);
    ~MasterComboBox() override;

    void clear(); ///< removes the items and what was typed; search stays as it is

    void setSearchEnabled(bool enabled = true); ///< off in the beginning
    bool isSearchEnabled() const;

    /// Appends items: shown texts and, of equal length, what currentData() gives.
    void AddItemsList(const QStringList &texts, const QStringList &data);
    void selectFirstItem(); ///< nothing without items

    void applySkin() override;

signals:
    void nothingFits(const QString &typed); ///< Enter after a search that found nothing; the choice stays

protected:
    void changeEvent(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void makeSearchable(int first, int last);
    bool searchKey(int key);
    bool isTyping() const;
    bool isListOpen() const;
    int typedItem() const;
    void openWholeList();
    void take(int item);
    void closeSearch();
};
