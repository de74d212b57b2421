#pragma once

#include <QByteArray>
#include <QList>

#include <functional>

namespace cq::test {

// Live processes whose command line mentions the text, optionally only those whose program
// name (/proc/PID/comm) is the given one; zombies have ended and do not count.
QList<qint64> ProcessesMentioning(const QByteArray& text, qint64 except = 0,
                                  const QByteArray& name = {});

// Runs events until the condition holds or the time is up; says whether it came to hold.
bool Eventually(const std::function<bool()>& condition, int ms);

} // namespace cq::test
