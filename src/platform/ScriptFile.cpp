#include "platform/ScriptFile.h"

#include "platform/TextFiles.h"

namespace cq {

bool SaveScriptToFile(const QString& script, const QString& fileSpec) {
    // sh stops reading a word at a NUL, so a value holding one would run as something else.
    if (script.contains(QChar(u'\0')))
        return false;
    QString text = script;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (!text.endsWith(u'\n'))
        text += u'\n';
    return WriteWholeFile(text.toUtf8(), fileSpec);
}

} // namespace cq
