#include "platform/Random.h"

#include <QRandomGenerator>

namespace cq {

int RandomNumberBetween(int low, int high) {
    if (high <= low)
        return low;
    return QRandomGenerator::global()->bounded(low, high + 1);
}

} // namespace cq
