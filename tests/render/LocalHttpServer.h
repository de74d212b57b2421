#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

class QTcpServer;
class QTcpSocket;

namespace cq::test {

// A small HTTP/1.1 server on the loopback address for a browser under test: it serves fixed
// pages and files, answers byte ranges with 206 as a media player asks for them, and keeps what
// the page posts to /report.
class LocalHttpServer : public QObject {
    Q_OBJECT
public:
    explicit LocalHttpServer(QObject* parent = nullptr);

    bool listen();
    QString url(const QString& path) const;
    void addPage(const QString& path, const QByteArray& html);
    void addFile(const QString& path, const QString& file, const QByteArray& type);

    QByteArray report() const { return m_report; }
    int rangeAnswers() const { return m_rangeAnswers; }

private:
    struct Resource {
        QByteArray type;
        QByteArray body;
    };

    void onReadyRead(QTcpSocket* socket);
    // Answers one whole request from the front of the buffer; false while it is incomplete.
    bool answer(QTcpSocket* socket, QByteArray& buffer);
    void send(QTcpSocket* socket, const QByteArray& status, const QByteArray& headers,
              const QByteArray& body);
    void sendResource(QTcpSocket* socket, const Resource& r, const QByteArray& range);

    QTcpServer* m_server;
    QHash<QString, Resource> m_resources;
    QHash<QTcpSocket*, QByteArray> m_buffers;
    QByteArray m_report;
    int m_rangeAnswers = 0;
};

} // namespace cq::test
