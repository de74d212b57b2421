#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace cq {

// System/TTS.txt: the entries, each followed by CR LF, as UTF-8 bytes with every byte inverted
// (255 - b), then one plain CR LF.
QByteArray EncodeTextList(const QStringList& entries);
// The reverse; empty pieces are skipped. Bytes that are not valid UTF-8 after the inversion
// were written by an older installation and are read as Windows-1252. A file too short for its
// final CR LF gives no entries.
QStringList DecodeTextList(const QByteArray& fileBytes);
// The text of the file as the whole-list editor shows it: entries separated by CR LF, blank
// lines kept.
QString DecodeTextListForEditing(const QByteArray& fileBytes);

QStringList LoadTextList(const QString& fileSpec);
bool SaveTextList(const QStringList& entries, const QString& fileSpec);
// What the whole-list editor saves: the typed text, inverted as it stands.
bool SaveTextListText(const QString& text, const QString& fileSpec);

QStringList DefaultTextList();

} // namespace cq
