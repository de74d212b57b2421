#include "LocalHttpServer.h"

#include "platform/TextFiles.h"

#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>

namespace cq::test {

LocalHttpServer::LocalHttpServer(QObject* parent)
    : QObject(parent), m_server(new QTcpServer(this)) {
    connect(m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
            connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                m_buffers.remove(socket);
                socket->deleteLater();
            });
        }
    });
}

bool LocalHttpServer::listen() {
    return m_server->listen(QHostAddress::LocalHost, 0);
}

QString LocalHttpServer::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server->serverPort()).arg(path);
}

void LocalHttpServer::addPage(const QString& path, const QByteArray& html) {
    m_resources.insert(path, {"text/html; charset=utf-8", html});
}

void LocalHttpServer::addFile(const QString& path, const QString& file, const QByteArray& type) {
    m_resources.insert(path, {type, ReadFileToBytes(file)});
}

void LocalHttpServer::onReadyRead(QTcpSocket* socket) {
    QByteArray& buffer = m_buffers[socket];
    buffer += socket->readAll();
    while (answer(socket, buffer)) {
    }
}

bool LocalHttpServer::answer(QTcpSocket* socket, QByteArray& buffer) {
    const qsizetype headerEnd = buffer.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return false;
    const QByteArray head = buffer.left(headerEnd);
    static const QRegularExpression lengthRe(QStringLiteral("(?im)^content-length:\\s*(\\d+)"));
    static const QRegularExpression rangeRe(QStringLiteral("(?im)^range:\\s*bytes=(\\S+)"));
    const QString headText = QString::fromLatin1(head);
    const QRegularExpressionMatch length = lengthRe.match(headText);
    const qsizetype bodyLength = length.hasMatch() ? length.captured(1).toLongLong() : 0;
    if (buffer.size() < headerEnd + 4 + bodyLength)
        return false;
    const QByteArray body = buffer.mid(headerEnd + 4, bodyLength);
    buffer.remove(0, headerEnd + 4 + bodyLength);

    const QList<QByteArray> requestLine = head.left(head.indexOf("\r\n")).split(' ');
    const QString path = QString::fromLatin1(requestLine.value(1)).section(u'?', 0, 0);
    if (requestLine.value(0) == "POST" && path == u"/report") {
        m_report = body;
        send(socket, "200 OK", "Content-Type: text/plain\r\n", "thanks");
    } else if (m_resources.contains(path)) {
        const QRegularExpressionMatch range = rangeRe.match(headText);
        sendResource(socket, m_resources.value(path),
                     range.hasMatch() ? range.captured(1).toLatin1() : QByteArray());
    } else {
        send(socket, "404 Not Found", "Content-Type: text/plain\r\n", "not here");
    }
    return true;
}

void LocalHttpServer::sendResource(QTcpSocket* socket, const Resource& r, const QByteArray& range) {
    const QByteArray type = "Content-Type: " + r.type + "\r\nAccept-Ranges: bytes\r\n";
    const qint64 total = r.body.size();
    if (range.isEmpty()) {
        send(socket, "200 OK", type, r.body);
        return;
    }
    // "first-last", "first-" or "-suffix".
    const QList<QByteArray> ends = range.split('-');
    qint64 first = ends.value(0).toLongLong();
    qint64 last = ends.value(1).isEmpty() ? total - 1 : ends.value(1).toLongLong();
    if (ends.value(0).isEmpty()) {
        first = std::max<qint64>(0, total - ends.value(1).toLongLong());
        last = total - 1;
    }
    last = std::min(last, total - 1);
    if (first > last) {
        send(socket, "416 Range Not Satisfiable",
             "Content-Range: bytes */" + QByteArray::number(total) + "\r\n", {});
        return;
    }
    ++m_rangeAnswers;
    send(socket, "206 Partial Content",
         type + "Content-Range: bytes " + QByteArray::number(first) + '-' +
             QByteArray::number(last) + '/' + QByteArray::number(total) + "\r\n",
         r.body.mid(first, last - first + 1));
}

void LocalHttpServer::send(QTcpSocket* socket, const QByteArray& status, const QByteArray& headers,
                           const QByteArray& body) {
    socket->write("HTTP/1.1 " + status + "\r\n" + headers +
                  "Content-Length: " + QByteArray::number(body.size()) +
                  "\r\nCache-Control: no-store\r\nConnection: keep-alive\r\n\r\n" + body);
}

} // namespace cq::test
