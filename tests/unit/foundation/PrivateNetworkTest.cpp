#include "Foundation/PrivateNetwork.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace quillmoth {
namespace {

TEST(PrivateNetwork, isRecognisedInEverySpellingOfAnAddress) {
    std::istringstream hosts(R"(
        localhost LOCALHOST. a.localhost 127.0.0.1 127.1 2130706433 0x7f000001 0177.0.0.1 %31%32%37.0.0.1
        10.0.0.1 172.31.255.255 192.168.1.1 169.254.169.254 100.64.0.1 0.0.0.0 255.255.255.255 224.0.0.1
        [::1] [::] [fe80::1] [fe80::1%25eth0] [fd00::1] [::ffff:10.0.0.1] [::ffff:8.8.8.8]
        [64:ff9b::c0a8:101] [2002:7f00:1::] [no])");
    for (std::string host; hosts >> host;)
        EXPECT_TRUE(isPrivateHost(host)) << host;
    EXPECT_TRUE(isPrivateHost(""));
    for (const char* host : {"example.org", "8.8.8.8", "172.32.0.1", "172.15.255.255", "100.128.0.1",
                             "128.0.0.1", "192.169.0.1", "[2606:4700::1]", "[64:ff9b::808:808]",
                             "localhost.example.org", "notlocalhost", "127.0.0.1.example.org"})
        EXPECT_FALSE(isPrivateHost(host)) << host;
    EXPECT_TRUE(isPrivateAddress({})) << "what is no address is nobody's";
}

} // namespace
} // namespace quillmoth
