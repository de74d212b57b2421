#include "platform/BrowserLookup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

namespace cq {

namespace {

const QStringList kWebTypes{QStringLiteral("x-scheme-handler/https"),
                            QStringLiteral("x-scheme-handler/http"), QStringLiteral("text/html")};

QStringList folderList(const QProcessEnvironment& env, const char* name, const QString& fallback) {
    QStringList folders;
    for (const QString& f : env.value(QString::fromLatin1(name), fallback).split(u':'))
        if (!f.isEmpty())
            folders << f;
    return folders;
}

QString homeFolder(const QProcessEnvironment& env, const char* name, const QString& below) {
    const QString set = env.value(QString::fromLatin1(name));
    return !set.isEmpty() ? set : env.value(QStringLiteral("HOME")) + below;
}

// The folders that hold desktop entries, most personal first.
QStringList applicationFolders(const QProcessEnvironment& env) {
    QStringList folders{homeFolder(env, "XDG_DATA_HOME", QStringLiteral("/.local/share"))};
    folders << folderList(env, "XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share"));
    for (QString& f : folders)
        f += QStringLiteral("/applications");
    return folders;
}

// The association files in the order the desktop reads them; desktop-specific ones first.
QStringList associationFiles(const QProcessEnvironment& env) {
    QStringList desktops;
    for (const QString& d : env.value(QStringLiteral("XDG_CURRENT_DESKTOP")).split(u':'))
        if (!d.isEmpty())
            desktops << d.toLower();
    QStringList configFolders{homeFolder(env, "XDG_CONFIG_HOME", QStringLiteral("/.config"))};
    configFolders << folderList(env, "XDG_CONFIG_DIRS", QStringLiteral("/etc/xdg"));
    QStringList files;
    for (const QStringList& folders : {configFolders, applicationFolders(env)})
        for (const QString& folder : folders) {
            for (const QString& d : desktops)
                files << folder + u'/' + d + QStringLiteral("-mimeapps.list");
            files << folder + QStringLiteral("/mimeapps.list");
        }
    for (const QString& folder : applicationFolders(env))
        files << folder + QStringLiteral("/defaults.list");
    return files;
}

// The desktop entries a section of an association file names for a type, in order.
QStringList entriesFor(const QString& file, const QString& section, const QString& type) {
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QStringList entries;
    bool inSection = false;
    for (const QByteArray& raw : f.readAll().split('\n')) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(u'[')) {
            inSection = line == u'[' + section + u']';
            continue;
        }
        if (inSection && line.section(u'=', 0, 0).trimmed() == type)
            for (const QString& e : line.section(u'=', 1).split(u';'))
                if (!e.trimmed().isEmpty())
                    entries << e.trimmed();
    }
    return entries;
}

bool entryInstalled(const QString& entry, const QStringList& folders) {
    for (const QString& folder : folders)
        if (QFileInfo(folder + u'/' + entry).isFile())
            return true;
    return false;
}

QString firstInstalled(const QStringList& files, const QString& section, const QString& type,
                       const QStringList& folders) {
    for (const QString& file : files)
        for (const QString& entry : entriesFor(file, section, type))
            if (entryInstalled(entry, folders))
                return entry;
    return {};
}

} // namespace

QString FindWebBrowserHandler(const QProcessEnvironment& env) {
    const QString browserEnv = env.value(QStringLiteral("BROWSER")).trimmed();
    if (!browserEnv.isEmpty())
        return browserEnv;
    const QStringList folders = applicationFolders(env);
    const QStringList files = associationFiles(env);
    QStringList caches;
    for (const QString& folder : folders)
        caches << folder + QStringLiteral("/mimeinfo.cache");
    for (const QString& type : kWebTypes) {
        for (const char* section : {"Default Applications", "Added Associations"}) {
            const QString entry =
                firstInstalled(files, QString::fromLatin1(section), type, folders);
            if (!entry.isEmpty())
                return entry;
        }
        const QString cached = firstInstalled(caches, QStringLiteral("MIME Cache"), type, folders);
        if (!cached.isEmpty())
            return cached;
    }
    const QStringList path = folderList(env, "PATH", QString());
    if (path.isEmpty()) // an empty list would make findExecutable search the studio's own PATH
        return {};
    for (const QString& alternative :
         {QStringLiteral("x-www-browser"), QStringLiteral("www-browser")}) {
        const QString program = QStandardPaths::findExecutable(alternative, path);
        if (!program.isEmpty())
            return program;
    }
    return {};
}

} // namespace cq
