// The studio and the test programs leave with _Exit, which skips the leak check that would run at
// exit: in a build with the sanitizers, cq::QuickExit must run it first.
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct HelperRun {
    int exitCode = -1;
    QStringList reports;
};

// The helper's reports go to a folder of this test's own, not to the run's: the leak is on purpose.
HelperRun runHelper(const QString& mode) {
    QTemporaryDir reports;
    QProcess helper;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    // Both runtimes read the report's place, the later one winning: both are told.
    const QString place = ":exitcode=86:log_path=" + reports.path() + "/report";
    env.insert("ASAN_OPTIONS", "detect_leaks=1" + place);
    env.insert("UBSAN_OPTIONS", "halt_on_error=1" + place);
    env.remove("LSAN_OPTIONS");
    helper.setProcessEnvironment(env);
    helper.start(CQ_LEAK_HELPER, {mode});
    EXPECT_TRUE(helper.waitForFinished(60000));
    return {helper.exitCode(), QDir(reports.path()).entryList(QDir::Files)};
}

} // namespace

TEST(QuickExit, RunsTheLeakCheckBeforeLeavingAndKeepsTheExitCodeOtherwise) {
    const HelperRun leaking = runHelper("leak");
    EXPECT_EQ(leaking.exitCode, 86);
    EXPECT_EQ(leaking.reports.size(), 1);

    const HelperRun clean = runHelper("clean");
    EXPECT_EQ(clean.exitCode, 3);
    EXPECT_TRUE(clean.reports.isEmpty()) << clean.reports.join(u' ').toStdString();
}
