#include "share/CarrierList.h"

#include "platform/OutsideText.h"
#include "platform/TextFiles.h"
#include "platform/TextHelpers.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace cq {

namespace {

QString DecodeCarrierText(const QByteArray& bytes) {
    return DecodeOutsideText(bytes).text;
}

QList<QByteArray> CarrierFileLines(QByteArray bytes) {
    if (bytes.isEmpty())
        return {};
    // A final line end is no line of its own. Lines end with CR LF; a file edited with a
    // Linux editor has bare LF, which is taken the same way.
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    QList<QByteArray> lines = bytes.split('\n');
    for (QByteArray& line : lines)
        if (line.endsWith('\r'))
            line.chop(1);
    return lines;
}

// A blank line is spacing someone typed, not the end of the carriers.
bool IsBlank(const QByteArray& line) {
    return line.trimmed().isEmpty();
}

// Where a new carrier goes: after the last carrier before the first line that is no carrier.
qsizetype EndOfCarriers(const QList<QByteArray>& lines) {
    qsizetype end = 0;
    for (qsizetype i = 0; i < lines.size() && (lines[i].contains(';') || IsBlank(lines[i])); ++i)
        if (!IsBlank(lines[i]))
            end = i + 1;
    return end;
}

} // namespace

const QList<Carrier>& BuiltInCarriers() {
    static const QList<Carrier> carriers{
        {QStringLiteral("Alltel"), QStringLiteral("mms.alltelwireless.com")},
        {QStringLiteral("AT&T"), QStringLiteral("mms.att.net")},
        {QStringLiteral("Boost Mobile"), QStringLiteral("myboostmobile.com")},
        {QStringLiteral("Cingular (AT&T)"), QStringLiteral("mms.att.net")},
        {QStringLiteral("Einstein PCS"), QStringLiteral("einsteinmms.com")},
        {QStringLiteral("Metro PCS"), QStringLiteral("mymetropcs.com")},
        {QStringLiteral("Sprint"), QStringLiteral("pm.sprint.com")},
        {QStringLiteral("T-Mobile"), QStringLiteral("tmomail.net")},
        {QStringLiteral("US Cellular"), QStringLiteral("mms.uscc.net")},
        {QStringLiteral("Verizon Wireless"), QStringLiteral("vzwpix.com")},
        {QStringLiteral("Virgin Mobile"), QStringLiteral("vmpix.com")},
    };
    return carriers;
}

int CarrierFileCapacity() {
    return kCarrierTableSize - int(BuiltInCarriers().size());
}

QList<Carrier> ParseCarrierFile(const QByteArray& bytes) {
    QList<Carrier> carriers;
    for (const QByteArray& line : CarrierFileLines(bytes)) {
        if (IsBlank(line))
            continue;
        const qsizetype semicolon = line.indexOf(';');
        if (semicolon < 0)
            break;
        const QByteArray name = line.left(semicolon);
        const QByteArray domain = line.mid(semicolon + 1);
        if (name.isEmpty() || domain.isEmpty())
            continue;
        if (carriers.size() >= CarrierFileCapacity())
            break;
        carriers.append({DecodeCarrierText(name), DecodeCarrierText(domain)});
    }
    return carriers;
}

QList<Carrier> FillCarrierList(const QString& carrierListFileSpec) {
    QList<Carrier> carriers;
    if (QFileInfo(carrierListFileSpec).isFile())
        carriers = ParseCarrierFile(ReadFileToBytes(carrierListFileSpec));
    carriers.append(BuiltInCarriers());
    return carriers;
}

QString PhoneAddress(const QString& phoneNumber, const QString& domain) {
    return GetDigitsOnly(phoneNumber) + u'@' + domain;
}

QString CarrierEntryProblem(const QString& name, const QString& domain) {
    if (name.trimmed().isEmpty())
        return QStringLiteral("Type the name of the cell carrier.");
    if (name.contains(u';') || name.contains(u'\r') || name.contains(u'\n'))
        return QStringLiteral("A carrier name cannot contain \";\" or line breaks.");
    static const QRegularExpression host(
        QStringLiteral("^[A-Za-z0-9](?:[A-Za-z0-9-]*[A-Za-z0-9])?"
                       "(?:\\.[A-Za-z0-9](?:[A-Za-z0-9-]*[A-Za-z0-9])?)+$"));
    if (!host.match(domain.trimmed()).hasMatch())
        return QStringLiteral("Type the MMS server as a domain name, for example "
                              "mms.carrier.example.");
    return {};
}

QString AddCarrierToFile(const QString& carrierListFileSpec, const QString& name,
                         const QString& domain) {
    const QString problem = CarrierEntryProblem(name, domain);
    if (!problem.isEmpty())
        return problem;
    const QByteArray bytes = QFileInfo(carrierListFileSpec).isFile()
                                 ? ReadFileToBytes(carrierListFileSpec)
                                 : QByteArray();
    if (ParseCarrierFile(bytes).size() >= CarrierFileCapacity())
        return QStringLiteral("The carrier list is full: it holds %1 carriers.")
            .arg(kCarrierTableSize);
    QList<QByteArray> lines = CarrierFileLines(bytes);
    lines.insert(EndOfCarriers(lines), (name.trimmed() + u';' + domain.trimmed()).toUtf8());
    if (!WriteWholeFile(lines.join("\r\n") + "\r\n", carrierListFileSpec))
        return QStringLiteral("The carrier list \"%1\" could not be written.")
            .arg(carrierListFileSpec);
    return {};
}

} // namespace cq
