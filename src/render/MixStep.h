#pragma once

#include "platform/ToolCommand.h"

#include <QObject>
#include <QString>

namespace cq {

class ToolRunner;
struct RunResult;

// Runs the command that joins the pieces and mixes in the voice, and tells how far it has come.
// Ends with finished: an empty problem when the result was written.
class MixStep : public QObject {
    Q_OBJECT
public:
    // output: the file the command writes; its folder is named if the disk is full.
    MixStep(ToolCommand command, QString output, QObject* parent = nullptr);

    void start();
    void cancel();
    bool isRunning() const;

signals:
    void progressed(qint64 writtenMs);
    void finished(const QString& problem);

private:
    void onOutput(const QString& line);
    void onFinished(const RunResult& result);

    ToolCommand m_command;
    QString m_output;
    ToolRunner* m_runner;
};

} // namespace cq
