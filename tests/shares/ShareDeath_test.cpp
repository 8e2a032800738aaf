#include "tests/shares/ShareDeath.h"

namespace quellbox {

class ShareDeath : public ShareDeathTest {};

TEST_P(ShareDeath, LosesNoMessageThatIsUnblockedWithinAShare) {
    ExpectNothingLost(Unblocking(), true);
}

TEST_P(ShareDeath, LosesNoMessageThatIsUnblockedBetweenShares) {
    ExpectNothingLost(Unblocking());
}

TEST_P(ShareDeath, PassesOverNoMessageThatIsDeleted) {
    ExpectNothingLost(Deleting());
}

TEST_P(ShareDeath, LosesNoMessageThatIsTolerated) {
    ExpectNothingLost(Tolerating());
}

TEST_P(ShareDeath, PassesOverNoMessageThatIsCleansed) {
    ExpectNothingLost(Cleansing());
}

QUELLBOX_ON_EACH_CLIENT(ShareDeath);

} // namespace quellbox
