// See Merge.h.
#include "view/Merge.h"

#include <algorithm>

namespace tools::view {

using Answer = LogSource::Answer;

void Merge::advance(Head &head)
{
    head.state = head.source->next(head.record);
    if (head.state == Answer::kRecord && head.record.hasTime) head.order = head.record.millis;
}

const Record *Merge::next()
{
    if (given_) given_->state = Answer::kNothingYet;
    given_ = nullptr;
    for (Head &head : heads_) {
        if (head.state == Answer::kNothingYet) advance(head);
        if (head.state != Answer::kRecord) continue;
        if (!given_ || head.order < given_->order) given_ = &head;
    }
    return given_ ? &given_->record : nullptr;
}

bool Merge::isAtEnd() const
{
    return std::all_of(heads_.begin(), heads_.end(),
                       [](const Head &head) { return head.state == Answer::kEnd; });
}

void Merge::stopFollowing()
{
    for (Head &head : heads_) {
        head.source->stopFollowing();
        if (head.state == Answer::kEnd) head.state = Answer::kNothingYet;
    }
}

} // namespace tools::view
