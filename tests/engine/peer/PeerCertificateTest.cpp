#include "engine/peer/PeerCertificate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Corvanta::Engine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kPem =
    "-----BEGIN CERTIFICATE-----\n"
    "MIIBdjCCARugAwIBAgIUMUbpbeeFwGoU/Bekw9M5DfWY9wYwCgYIKoZIzj0EAwIw\n"
    "DzENMAsGA1UEAwwEdGVzdDAgFw0yNjExMjIxNDMxMzRaGA8yMTI2MTAyOTE0MzEz\n"
    "NFowDzENMAsGA1UEAwwEdGVzdDBZMBMGByqGSM49AgEGCCqGSM49AwEHA0IABIc5\n"
    "/F21KS54O9ZRdDwlj2JPro8frjO7xYGRtba7KT4D8rV8V6bf4N7aSM9F/cSLugkN\n"
    "lphIq+s+9TqiJHNI+bmjUzBRMB0GA1UdDgQWBBSdtx3hYhMSLTI6jfXIeNYqcHTx\n"
    "GTAfBgNVHSMEGDAWgBSdtx3hYhMSLTI6jfXIeNYqcHTxGTAPBgNVHRMBAf8EBTAD\n"
    "AQH/MAoGCCqGSM49BAMCA0kAMEYCIQCinB7Icce0zlUl7Mg5+Cwva19NJYpk0O3t\n"
    "af3CsNIWIwIhANgql4E9oEVVP7A0T0XnlSZ1sp3XYFYp+fYwXq8RaUhd\n"
    "-----END CERTIFICATE-----\n";
const std::string kSha256 =
    "sha-256 08:62:4B:D5:A3:7B:54:B9:30:4A:D4:1A:F6:91:A5:7C:88:21:8B:5C:55:19:AC:C6:F5:E7:95:C9:AA:3B:19:F1";
const std::string kSha512 =
    "sha-512 89:E7:74:3A:0C:21:E4:76:1C:20:45:60:4E:BC:54:07:7C:E0:58:A2:22:F2:CB:FC:6C:39:2A:27:30:74:48:3A:"
    "CB:72:48:24:C4:DF:27:35:8A:FC:39:9E:64:49:A5:BA:A1:3F:26:17:38:30:14:17:66:C9:BA:CD:14:4F:61:F0";

TEST(PeerCertificate, FitsTheDigestThatNamesIt) {
    EXPECT_TRUE(FitsCertificate({kSha256}, kPem));
    EXPECT_TRUE(FitsCertificate({kSha512}, kPem));
    EXPECT_TRUE(FitsCertificate({"sha-256 00:11", kSha256}, kPem));
    EXPECT_TRUE(FitsCertificate(
        {"SHA-256 08:62:4b:d5:a3:7b:54:b9:30:4a:d4:1a:f6:91:a5:7c:88:21:8b:5c:55:19:ac:c6:f5:e7:95:c9:aa:3b:"
         "19:f1"},
        kPem));
}

TEST(PeerCertificate, FitsNoOther) {
    std::string other = kSha256;
    other.back() = '2';
    for (const std::string& fingerprint :
         {other, kSha256.substr(0, kSha256.size() - 3), "sha-512" + kSha256.substr(7),
          "sha-1" + kSha256.substr(7), std::string("sha-256"), std::string("sha-256 "), std::string()}) {
        EXPECT_FALSE(FitsCertificate({fingerprint}, kPem)) << fingerprint;
    }
    EXPECT_FALSE(FitsCertificate({}, kPem));
    for (const std::string& pem : {std::string(), std::string("-----BEGIN CERTIFICATE-----"),
                                   std::string("-----END CERTIFICATE----------BEGIN CERTIFICATE-----"),
                                   std::string("-----BEGIN CERTIFICATE----------END CERTIFICATE-----")}) {
        EXPECT_FALSE(FitsCertificate({kSha256}, pem));
    }
}

TEST(PeerCertificate, IsNamedInTheSessionAndInEachLine) {
    EXPECT_THAT(FingerprintsOf("v=0\r\no=- 1 0 IN IP4 0.0.0.0\r\ns=-\r\nt=0 0\r\na=fingerprint:sha-256 AA\r\n"
                               "m=audio 9 RTP 0\r\na=fingerprint:sha-256 BB\r\na=fingerprint:sha-512 CC\r\n"
                               "m=video 9 RTP 0\r\na=fingerprint:sha-256 AA\r\n"),
                ElementsAre("sha-256 AA", "sha-256 BB", "sha-512 CC"));
    EXPECT_THAT(FingerprintsOf(""), IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Engine
