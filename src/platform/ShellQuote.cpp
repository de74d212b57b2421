#include "platform/ShellQuote.h"

namespace cq {

QString ShellQuote(const QString& word) {
    QString quoted = word;
    quoted.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}

QString ShellCommandLine(const QStringList& words) {
    QStringList quoted;
    quoted.reserve(words.size());
    for (const QString& w : words)
        quoted << ShellQuote(w);
    return quoted.join(u' ');
}

} // namespace cq
