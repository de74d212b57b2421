#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace cq {

// A mobile carrier and the domain of its MMS gateway: mail to NUMBER@domain reaches the phone.
struct Carrier {
    QString name;
    QString domain;
    bool operator==(const Carrier&) const = default;
};

// The carrier table holds 200 entries; the built-in carriers always keep their places at the
// end, so the carrier file may fill the rest.
constexpr int kCarrierTableSize = 200;

const QList<Carrier>& BuiltInCarriers();
int CarrierFileCapacity();

// The usable lines of MMSServerList.txt ("name;domain", CR LF between lines), in order: the name
// is the text before the first ";", the domain all after it. A line without ";" ends the list;
// a line with an empty name or domain is skipped. Bytes that are not UTF-8 are read as Latin-1
// so that no byte is lost. At most CarrierFileCapacity() entries.
QList<Carrier> ParseCarrierFile(const QByteArray& bytes);

// The file's carriers followed by the built-in ones; a missing or unreadable file gives the
// built-in ones only.
QList<Carrier> FillCarrierList(const QString& carrierListFileSpec);

// The digits of the phone number, "@", and the gateway domain.
QString PhoneAddress(const QString& phoneNumber, const QString& domain);

// Why a new carrier line cannot be added; empty when it can.
QString CarrierEntryProblem(const QString& name, const QString& domain);

// Adds "name;domain" as a usable line: before the line that ends the list (if there is one),
// else at the end. The other lines keep their bytes. Returns an error text, empty on success.
QString AddCarrierToFile(const QString& carrierListFileSpec, const QString& name,
                         const QString& domain);

} // namespace cq
