#include "tests/cimhost/http/TestCertificates.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace cimhost {
namespace {

constexpr const char* newKey = " -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes ";

}  // namespace

void TestCertificates::_openssl(const std::string& arguments) const {
    const std::string command = "openssl " + arguments + " >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) throw std::runtime_error(command);
}

void TestCertificates::make(const std::string& name, const std::string& names,
                            const std::string& options) {
    if (!std::filesystem::exists(authority())) {
        _openssl("req -x509 -days 2 -subj '/CN=Test authority'" + std::string(newKey) + "-keyout " +
                 key("authority") + " -out " + authority());
    }
    const std::string request = _file(name + ".csr");
    const std::string extensions = _folder.write(name + ".ext", "subjectAltName=" + names + "\n");
    _openssl("req -subj /CN=server" + std::string(newKey) + "-keyout " + key(name) + " -out " +
             request);
    _openssl("x509 -req -in " + request + " -CA " + authority() + " -CAkey " + key("authority") +
             " -CAcreateserial -extfile " + extensions + " -out " + certificate(name) + " " +
             (options.empty() ? "-days 2" : options));
}

void TestCertificates::makeSelfSigned(const std::string& name) {
    _openssl("req -x509 -days 2 -subj /CN=localhost -addext subjectAltName=DNS:localhost" +
             std::string(newKey) + "-keyout " + key(name) + " -out " + certificate(name));
}

}  // namespace cimhost
