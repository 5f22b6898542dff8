#pragma once

#include "PaperGateway.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

/// What the command line of the program says.
struct DeskOptions {
    QString books; ///< of the embedded gateway; empty: the sample
    QString state; ///< empty: in memory
    QString serverName;
    QString user; ///< empty: the first manager of the books
    QString settingsDir;
    bool keepsSettings = true; ///< false: in memory only
    QStringList pluginDirs;    ///< empty: the library and the pages of this program
    QString language = QStringLiteral("zh");
    QString journal; ///< empty: none
    QString script;
    QString shotsDir;
    GatewayOptions market;
    int marketSpeed = -1; ///< seconds of the market in one real second from the start on; -1: as it is
    bool isOffscreen = false;
    bool isHelp = false;

    /// False: errorText says what is wrong. Needs no application object.
    static bool read(const QStringList &arguments, DeskOptions &options, QString &errorText);

    static QString helpText(); ///< needs an application object

    // What is not given, as seen from the program's own folder: needs an application object.
    QString booksDir() const;
    QStringList allPluginDirs() const;
    QString settingsDirOf(const QString &userId) const; ///< empty: in memory only
};
