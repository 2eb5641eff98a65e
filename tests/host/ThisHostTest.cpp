// Which recorded origins are the agent's own machine: its names and
// addresses always, the scheduler's "localhost" only when the scheduler runs
// here too.

#include "host/agent/ThisHost.h"

#include <gtest/gtest.h>

using pdeprint::ThisHost;

TEST(ThisHost, OwnNamesAndAddressesAndTheLocalSchedulersLoopback)
{
    const ThisHost local({ "desk1", "desk1.example.org" }, { QHostAddress("10.0.0.5"), QHostAddress("fd00::5") }, true);
    const ThisHost remote({ "desk1" }, { QHostAddress("10.0.0.5") }, false);
    const struct { const char *origin; bool fromLocalServer, fromRemoteServer; } rows[] = {
        { "localhost", true, false },         { "[v1.::1]", true, false },
        { "10.0.0.5", true, true },           { "[v1.fd00::5]", true, false },
        { "10.0.0.6", false, false },         { "Desk1.Example.org.", true, false },
        { "desk1", true, true },              { "desk1.evil.example", false, false },
        { "", false, false },                 { "desk7.example", false, false },
    };
    for (const auto &[origin, fromLocalServer, fromRemoteServer] : rows) {
        EXPECT_EQ(local.isOrigin(origin), fromLocalServer) << origin;
        EXPECT_EQ(remote.isOrigin(origin), fromRemoteServer) << origin;
    }
}
