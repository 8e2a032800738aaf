#include "settings/ChosenProfile.h"

#include <gtest/gtest.h>

using namespace quellbox;

TEST(ChosenProfile, IsTheOneOfTheSettings) {
    AppState state;
    EXPECT_EQ(&ChosenProfile(state), &ServerProfiles().front());
    state.ServerProfile = QStringLiteral("amavis");
    EXPECT_EQ(ChosenProfile(state).key, QStringLiteral("amavis"));
}

TEST(ChosenProfile, OfADescribedServerIsAnotherOneWhenTheDescriptionChanges) {
    AppState state;
    state.ServerProfile = QStringLiteral("own");
    state.Own.rating = QStringLiteral("X-Junk");
    const ServerProfile* before = &ChosenProfile(state);
    EXPECT_EQ(before->key, QStringLiteral("own"));
    EXPECT_EQ(before->ratings.at(0).name, QByteArray("X-Junk"));
    EXPECT_EQ(&ChosenProfile(state), before);
    state.Own.rating = QStringLiteral("X-Other");
    EXPECT_NE(&ChosenProfile(state), before);
    state.Own.rating = QStringLiteral("X-Junk");
    EXPECT_EQ(&ChosenProfile(state), before);
}
