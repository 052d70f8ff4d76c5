// The login handshake of the client session against the simulator's server: a right password
// opens the session, a wrong one fails the connect and nothing the client meant to send reaches
// the scene, and a server without a password lets any client in.
#include <gtest/gtest.h>

#include "client/client_exceptions.h"
#include "tests/e2e/pumped_session.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/vxsim/running_server.h"

namespace {

VXSimOptions withPassword(const std::string& password) {
  VXSimOptions options;
  options.password = password;
  return options;
}

// The text of the exception connect throws, or "connected" / "not connected".
std::string connectOutcome(PumpedSession& client) {
  try {
    return client.session.connect() ? "connected" : "not connected";
  } catch (const AFCException& e) {
    return e.what();
  }
}

TEST(Login, TheRightPasswordOpensTheSessionAndItsCommandsAreApplied) {
  RunningServer server(withPassword("on air"));
  PumpedSession client(server.address());
  client.session.setPassword("on air");
  client.session.setProject("Show");
  ASSERT_EQ(connectOutcome(client), "connected");
  EXPECT_TRUE(client.session.isOpen());
  client.session.createNode("Group", "logged", "Root");
  ASSERT_TRUE(client.sync());
  server.stop();
  EXPECT_NE(server.hub().getScene().find("Root/logged"), nullptr);
  EXPECT_EQ(server.hub().getScene().getProjects(), std::vector<std::string>{"Show"});
}

TEST(Login, AWrongPasswordFailsTheConnectAndNothingIsApplied) {
  RunningServer server(withPassword("on air"));
  PumpedSession client(server.address());
  client.session.setPassword("off air");
  client.session.setProject("Show");  // would be the first thing sent after a login
  {
    CapturedErrLog log;
    EXPECT_EQ(connectOutcome(client), "Incorrect password.");
    const auto messages = log.messages();
    EXPECT_NE(
        std::find(messages.begin(), messages.end(), "Can't authenticate, Incorrect password."),
        messages.end());
  }
  EXPECT_FALSE(client.session.isOpen());
  client.session.createNode("Group", "sneaked", "Root");  // closed: dropped on this side

  // The same session gets in once it knows the password; only what it sends then is applied.
  client.session.setPassword("on air");
  ASSERT_EQ(connectOutcome(client), "connected");
  ASSERT_TRUE(client.sync());
  server.stop();
  EXPECT_EQ(server.hub().getScene().find("Root/sneaked"), nullptr);
  EXPECT_EQ(server.hub().getScene().getProjects(), std::vector<std::string>{"Show"});
}

TEST(Login, AServerWithoutPasswordLetsEveryClientIn) {
  RunningServer server(withPassword(""));
  PumpedSession anonymous(server.address());
  PumpedSession withSecret(server.address());
  withSecret.session.setPassword("anything");
  ASSERT_EQ(connectOutcome(anonymous), "connected");
  ASSERT_EQ(connectOutcome(withSecret), "connected");
  anonymous.session.createNode("Group", "a", "Root");
  withSecret.session.createNode("Group", "b", "Root");
  ASSERT_TRUE(anonymous.sync());
  ASSERT_TRUE(withSecret.sync());
  server.stop();
  EXPECT_NE(server.hub().getScene().find("Root/a"), nullptr);
  EXPECT_NE(server.hub().getScene().find("Root/b"), nullptr);
}

}  // namespace
