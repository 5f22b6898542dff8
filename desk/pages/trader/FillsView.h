#pragma once

#include <QtWidgets/QWidget>

class RecordModel;

/// The user's fills of the day.
class FillsView : public QWidget
{
    Q_OBJECT

public:
    explicit FillsView(QWidget *parent = nullptr);

private:
    RecordModel *m_model;
};
