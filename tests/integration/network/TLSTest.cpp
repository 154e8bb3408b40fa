#include "tests/integration/network/NetworkTest.h"

#include <QProcess>
#include <sstream>

namespace quillmoth::test {

namespace {

/// tls_server.py as a process of its own, which ends with its input.
struct TLSServer {
    TLSServer() {
        // The one that the packages are for; another may come first in the search path.
        process.start("/usr/bin/python3", {QUILLMOTH_TLS_SERVER});
        while (!process.canReadLine() && process.waitForReadyRead()) {
        }
        std::istringstream(process.readLine().toStdString()) >> authority >> http1 >> good >> expired >>
            selfsigned >> wronghost;
    }

    ~TLSServer() {
        process.closeWriteChannel();
        process.waitForFinished();
    }

    QProcess process;
    /// The file of the authority that signed the certificates.
    std::string authority;
    // The ports; `http1` has the good certificate, and speaks HTTP/1.1 alone.
    int http1 = 0;
    int good = 0;
    int expired = 0;
    int selfsigned = 0;
    int wronghost = 0;
};

/// The test's own authority is trusted, as those of the system are elsewhere.
class TLS : public NetworkTest {
protected:
    static void SetUpTestSuite() { server_ = std::make_unique<TLSServer>(); }

    static void TearDownTestSuite() { server_.reset(); }

    void SetUp() override { ASSERT_NE(tls.wronghost, 0) << "it does not start"; }

    static platform::URLRequest requestTo(int port, const std::string& path = "/") {
        auto request = postRequest("https://127.0.0.1:" + std::to_string(port) + path);
        request.setValue("Bearer secret", "Authorization");
        return request;
    }

    Answer ask(const platform::URLRequest& request) {
        const auto session = sessions->makeSession({.trustedCertificates = tls.authority}, nullptr, nullptr);
        return fetch(*session, request);
    }

    void expectRefusal(const Answer& answer, int port, const std::string& words) {
        EXPECT_FALSE(answer.response) << words;
        ASSERT_TRUE(answer.error) << words;
        EXPECT_EQ(answer.error->code, Code::secureConnectionFailed);
        EXPECT_EQ(answer.error->localizedDescription,
                  "The certificate of the server 127.0.0.1:" + std::to_string(port) + words +
                      " Nothing was sent.");
    }

    const TLSServer& tls = *server_;

private:
    // Its certificates take their time.
    static inline std::unique_ptr<TLSServer> server_;
};

TEST_F(TLS, AServerWithAGoodCertificateIsAskedByEitherVersionOfHTTP) {
    EXPECT_EQ(ask(requestTo(tls.good)).data, "HTTP/2 Bearer secret");
    EXPECT_EQ(ask(requestTo(tls.http1)).data, "HTTP/1.1 Bearer secret");
}

TEST_F(TLS, NothingIsSentToAServerWithABadCertificateAndTheUserIsToldWhatIsBad) {
    const std::string untrusted =
        " is not trusted: none of the authorities that this computer knows has signed it.";
    const auto seen = [&] { return ask(requestTo(tls.http1, "/seen")).data.value_or("nothing"); };
    const std::string before = seen();
    expectRefusal(ask(requestTo(tls.expired)), tls.expired, " has expired, or is not valid yet.");
    expectRefusal(ask(requestTo(tls.selfsigned)), tls.selfsigned, untrusted);
    expectRefusal(ask(requestTo(tls.wronghost)), tls.wronghost, " is for another server.");
    expectRefusal(fetch(requestTo(tls.good)), tls.good, untrusted);
    EXPECT_EQ(seen(), before + " http1") << "none but this request has come";
}

TEST_F(TLS, ARedirectFromHTTPSToHTTPIsRefusedThoughTheRequestHoldsNothingOfTheUsers) {
    for (const int port : {tls.good, tls.http1}) {
        platform::URLRequest request;
        request.url = "https://127.0.0.1:" + std::to_string(port) + "/unencrypted";
        const Answer answer = ask(request);
        ASSERT_TRUE(answer.error);
        EXPECT_EQ(answer.error->code, Code::redirectRefused);
        EXPECT_EQ(
            answer.error->localizedDescription,
            "The server 127.0.0.1:" + std::to_string(port) +
                " sends requests on to http://127.0.0.1:1, which is not encrypted. Nothing was sent there.");
    }
}

} // namespace

} // namespace quillmoth::test
