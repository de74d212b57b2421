#pragma once

#include <QObject>
#include <QString>

namespace cq {

class ToolRunner;
struct RunResult;

// Runs the line that joins the pieces and mixes in the voice, and tells how far it has come.
// Ends with finished: an empty problem when the result was written.
class MixStep : public QObject {
    Q_OBJECT
public:
    // output: the file the line writes; its folder is named if the disk is full.
    MixStep(QString line, QString output, QString scriptFile, QObject* parent = nullptr);

    void start();
    void cancel();
    bool isRunning() const;

signals:
    void progressed(qint64 writtenMs);
    void finished(const QString& problem);

private:
    void onOutput(const QString& line);
    void onFinished(const RunResult& result);

    QString m_line;
    QString m_output;
    QString m_scriptFile;
    ToolRunner* m_runner;
};

} // namespace cq
