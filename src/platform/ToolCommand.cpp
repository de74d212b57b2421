#include "platform/ToolCommand.h"

#include "platform/RegularFiles.h"

#include <QRegularExpression>

namespace cq {

namespace {

// A word as a person pastes it: left bare when nothing in it is live for a shell, else in single
// quotes, a ' inside as '\''. Only for reading: no shell runs a command of the studio's. The
// first word of a line is a variable's assignment when it holds "=", so there it is quoted too.
QString ReadableWord(const QString& word, bool first = false) {
    static const QRegularExpression kPlain(QStringLiteral("^[A-Za-z0-9_@%+=:,./-]+$"));
    if (kPlain.match(word).hasMatch() && !(first && word.contains(u'=')))
        return word;
    QString quoted = word;
    quoted.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}

} // namespace

QString ToolCommand::inputProblem() const {
    for (const QString& file : inputFiles) {
        const QString why = WhyNotARegularFile(file);
        if (!why.isEmpty())
            return QStringLiteral("\"%1\" is %2, not a regular file.").arg(file, why);
    }
    return {};
}

QString ToolCommand::commandLine() const {
    QStringList words{ReadableWord(program, true)};
    for (const QString& argument : arguments)
        words << ReadableWord(argument);
    if (!standardInputFile.isEmpty())
        words << QStringLiteral("<") << ReadableWord(standardInputFile);
    return words.join(u' ');
}

} // namespace cq
