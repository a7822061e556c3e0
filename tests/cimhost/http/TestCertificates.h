#pragma once

#include "tests/support/TemporaryFolder.h"

#include <string>

namespace cimhost {

/// Certificates that are made for a test, by the program openssl.
class TestCertificates {
public:
    /// With one for localhost and 127.0.0.1, signed by the authority.
    TestCertificates() { make("server", "DNS:localhost,IP:127.0.0.1"); }

    /// Makes one for these names, with options for its signing, in NAME.pem with its key in
    /// NAME.key.
    void make(const std::string& name, const std::string& names, const std::string& options = {});
    /// The same, signed by itself.
    void makeSelfSigned(const std::string& name);

    std::string authority() const { return _file("authority.pem"); }
    std::string certificate(const std::string& name = "server") const {
        return _file(name + ".pem");
    }
    std::string key(const std::string& name = "server") const { return _file(name + ".key"); }

private:
    std::string _file(const std::string& name) const { return _folder / name; }
    void _openssl(const std::string& arguments) const;

    TemporaryFolder _folder;
};

}  // namespace cimhost
