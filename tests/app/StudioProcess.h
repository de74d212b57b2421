#pragma once

#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace cq::test {

// What the studio program printed and how it ended.
struct StudioRun {
    int exitCode = -1;
    QString out, err;
};

// Runs the studio program to its end, its environment changed by the given variables.
inline StudioRun RunStudioProgram(const QStringList& args,
                                  const QMap<QString, QString>& environment) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (auto it = environment.cbegin(); it != environment.cend(); ++it)
        env.insert(it.key(), it.value());
    p.setProcessEnvironment(env);
    p.start(CQ_STUDIO_EXECUTABLE, args);
    EXPECT_TRUE(p.waitForFinished(60000));
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

} // namespace cq::test
