#include "render/OutputGuard.h"

#include "platform/Folders.h"
#include "platform/RegularFiles.h"
#include "render/CaptionFilesBeside.h"
#include "studio/AppFolder.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace cq {

namespace {

QString overAnInputProblem(const RenderInputs& in) {
    const QString landing = LandingPath(in.output);
    for (const QString& file : RenderReadFiles(in))
        if (ReadPath(file) == landing || LandingPath(file) == landing)
            return QStringLiteral("The result \"%1\" would replace \"%2\", which the render reads; "
                                  "choose another name for the result.")
                .arg(in.output, file);
    return {};
}

// Permission bits are checked as well as access(2): root may write anywhere, but a file whose
// owner took every write permission away is meant to stay as it is.
bool isWriteProtected(const QString& file) {
    const QByteArray name = QFile::encodeName(file);
    struct stat st {};
    if (::stat(name.constData(), &st) != 0)
        return false;
    return (st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || ::access(name.constData(), W_OK);
}

QString existingOutputProblem(const QString& output) {
    const FileKind kind = KindOfFile(output);
    if (kind == FileKind::Missing)
        return {};
    if (kind != FileKind::Regular)
        return QStringLiteral("\"%1\" is %2, not a file a result can replace; choose another name "
                              "for the result.")
            .arg(output, WhyNotARegularFile(output));
    if (isWriteProtected(output))
        return QStringLiteral("\"%1\" is write-protected, so the render does not replace it; "
                              "choose another name for the result, or make the file writable.")
            .arg(output);
    return {};
}

QString folderProblem(const QString& output) {
    QString folder = QFileInfo(LandingPath(output)).path();
    while (!QFileInfo(folder).exists() && QFileInfo(folder).path() != folder)
        folder = QFileInfo(folder).path();
    if (!QFileInfo(folder).isDir())
        return QStringLiteral("The result \"%1\" cannot be written: \"%2\" is not a folder.")
            .arg(output, folder);
    if (!IsWritableFolder(folder))
        return QStringLiteral("The result \"%1\" cannot be written: the folder \"%2\" does not let "
                              "the studio write into it.")
            .arg(output, folder);
    return {};
}

QString othersSubtitlesProblem(const RenderInputs& in) {
    if (!in.writeCaptions)
        return {};
    const QStringList others =
        CaptionFilesBeside(in.output, QString(), in.writtenFilesRecord).othersFiles();
    if (others.isEmpty())
        return {};
    return QStringLiteral("\"%1\" already stands beside the result and was not written by the "
                          "studio, so its captions would replace it; move it away, or choose "
                          "another name for the result.")
        .arg(others.first());
}

} // namespace

QStringList RenderReadFiles(const RenderInputs& in) {
    QStringList files{in.voiceFile, in.blackPicture};
    for (const TimelineEvent& row : in.rows)
        files << row.file;
    files << in.sourceFiles;
    files.removeAll(QString());
    files.removeDuplicates();
    return files;
}

QString RenderOutputProblem(const RenderInputs& in) {
    QString problem = overAnInputProblem(in);
    if (problem.isEmpty())
        problem = existingOutputProblem(in.output);
    if (problem.isEmpty())
        problem = folderProblem(in.output);
    if (problem.isEmpty())
        problem = othersSubtitlesProblem(in);
    return problem;
}

} // namespace cq
