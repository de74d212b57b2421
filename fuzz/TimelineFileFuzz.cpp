// Timeline.txt as Open Project and the command line's render read it, in every encoding a file
// may come in; what is read must write back to rows that read the same.
#include "FuzzSupport.h"

#include "studio/TimelineFile.h"

using namespace cq;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString base = QStringLiteral("/fuzz/project");
    const TimelineReadResult read = ReadTimelineBytes(fuzz::InputBytes(data, size), base);
    if (!read.ok())
        return 0;
    const TimelineReadResult again =
        ReadTimelineBytes(TimelineText(read.rows, base).toUtf8(), base);
    fuzz::Check(again.ok(), "a timeline the studio wrote cannot be read back");
    fuzz::Check(again.rows.size() == read.rows.size(), "a timeline written back lost rows");
    for (qsizetype i = 0; i < read.rows.size(); ++i) {
        const TimelineEvent& was = read.rows[i];
        const TimelineEvent& is = again.rows[i];
        fuzz::Check(was.kind == is.kind && was.atMs == is.atMs && was.startMs == is.startMs,
                    "a timeline written back reads as other events");
    }
    return 0;
}
