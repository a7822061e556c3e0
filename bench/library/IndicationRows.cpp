// h1: an alert becomes an instance, the log off. Its anchor makes the same calls of the broker's
// tables with values that it knows beforehand, but for the time.
#include "bench/library/PlainPath.h"
#include "bench/library/Rows.h"
#include "bench/library/Stage.h"
#include "common/KTAlertIndication.h"
#include "common/PYLConstants.h"
#include "common/PYLUtil.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr const char* alertClass = "KT_AlertIndication";
constexpr int severity = 2;

/// For the host's data, of which not every host has all.
class NoLines : public LogSink {
public:
    void write(LogLevel, std::string_view, std::string_view) noexcept override {}
};

Logger& quiet() {
    static Logger log("bench", std::make_shared<NoLines>(), LogLevel::error);
    return log;
}

/// A property as the anchor sets it.
struct PlainProperty {
    std::string name;
    CMPIType type;
    std::vector<std::string> texts;
    std::uint32_t number = 0;
};

void require(const CMPIStatus& status) {
    if (status.rc != CMPI_RC_OK) std::abort();
}

/// Reads what the library's instance holds, so that both sides set the same.
std::vector<PlainProperty> propertiesOf(const CMPIInstance* instance) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    std::vector<PlainProperty> properties;
    const auto count = instance->ft->getPropertyCount(instance, &status);
    for (unsigned i = 0; i < count; ++i) {
        CMPIString* name = nullptr;
        const CMPIData data = instance->ft->getPropertyAt(instance, i, &name, &status);
        require(status);
        if ((data.state & CMPI_nullValue) != 0) continue;
        PlainProperty property{plainChars(name, &status), data.type, {}, 0};
        if (data.type == CMPI_string) {
            property.texts.emplace_back(plainChars(data.value.string, &status));
        } else if (data.type == CMPI_stringA) {
            for (unsigned k = 0; k < data.value.array->ft->getSize(data.value.array, &status);
                 ++k) {
                property.texts.emplace_back(plainChars(
                    data.value.array->ft->getElementAt(data.value.array, k, &status).value.string,
                    &status));
            }
        } else if (data.type == CMPI_uint16) {
            property.number = data.value.uint16;
        } else if (data.type == CMPI_uint32) {
            property.number = data.value.uint32;
        } else if (data.type != CMPI_dateTime) {
            std::abort();  // no alert has others
        }
        require(status);
        properties.push_back(property);
    }
    return properties;
}

/// The same alert in plain calls.
class PlainAlert {
public:
    explicit PlainAlert(std::vector<PlainProperty> properties)
        : _host(PYL::PYLUtil::getHostName()), _properties(std::move(properties)) {}

    CMPIInstance* make() const {
        const CMPIBroker* const broker = stageBroker().handle();
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIObjectPath* const path =
            broker->eft->newObjectPath(broker, PYL::BaseServerNameSpace, alertClass, &status);
        require(status);
        require(path->ft->setHostname(path, _host.c_str()));
        CMPIInstance* const instance = broker->eft->newInstance(broker, path, &status);
        require(status);
        for (const auto& property : _properties) _set(broker, instance, property);
        return instance;
    }

private:
    static void _set(const CMPIBroker* broker, CMPIInstance* instance,
                     const PlainProperty& property) {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIValue value{};
        switch (property.type) {
            case CMPI_string: value.string = _newString(broker, property.texts.front()); break;
            case CMPI_stringA: value.array = _newArray(broker, property.texts); break;
            case CMPI_dateTime: value.dateTime = _newDateTime(broker); break;
            case CMPI_uint16: value.uint16 = static_cast<CMPIUint16>(property.number); break;
            default: value.uint32 = property.number;
        }
        status = instance->ft->setProperty(instance, property.name.c_str(), &value, property.type);
        require(status);
    }

    static CMPIString* _newString(const CMPIBroker* broker, const std::string& text) {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIString* const made = broker->eft->newString(broker, text.c_str(), &status);
        require(status);
        return made;
    }

    static CMPIArray* _newArray(const CMPIBroker* broker, const std::vector<std::string>& texts) {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIArray* const array = broker->eft->newArray(broker, static_cast<CMPICount>(texts.size()),
                                                       CMPI_string, &status);
        require(status);
        for (CMPICount i = 0; i < texts.size(); ++i) {
            CMPIValue value{};
            value.string = _newString(broker, texts[i]);
            require(array->ft->setElementAt(array, i, &value, CMPI_string));
        }
        return array;
    }

    static CMPIDateTime* _newDateTime(const CMPIBroker* broker) {
        using std::chrono::microseconds;
        using std::chrono::seconds;
        const auto now = std::chrono::floor<seconds>(std::chrono::system_clock::now());
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIDateTime* const made = broker->eft->newDateTimeFromBinary(
            broker, static_cast<CMPIUint64>(microseconds(now.time_since_epoch()).count()), 0,
            &status);
        require(status);
        return made;
    }

    std::string _host;
    std::vector<PlainProperty> _properties;
};

/// What the alerts of a device carry beyond what every alert does.
template <typename Alert>
void fill(Alert& alert) {
    alert.setDescription("The fan has failed. Air may no longer flow as the server needs it.");
    alert.setEventID("3");
    alert.setAlertType(5);
    alert.setProviderName("KT Cooling");
    alert.setRecommendedActions("Replace the fan");
    alert.setSystemCreationClassName(PYL::ScopedCentralClassName);
    alert.setAlertingManagedElement("root/ktq:PYL_Fan.DeviceID=\"fan1\"");
    alert.setAlertingElementFormat(2);
}

void fillDevice(PYL::KTAlertIndication& alert) {
    alert.setSummary("Fan status changed to failed");
    alert.setEventCategory(11);
    alert.setProbableCause(99);
    alert.setProbableCauseDescription("Fan Failed");
    alert.setHWLogicalLocation("Fan 3");
    alert.setHWPhysicalLocation("Fan bay 3");
    alert.setHWManufacturer("KT");
    alert.setHWPartNumber("412-8");
}

CmpiCpp::CmpiInstance standardAlert() {
    PYL::CIMAlertIndication alert(quiet(), alertClass, PYL::BaseServerNameSpace, severity);
    fill(alert);
    return alert.getInstance();
}

CmpiCpp::CmpiInstance serverAlert() {
    PYL::KTAlertIndication alert(quiet(), alertClass, PYL::BaseServerNameSpace, severity);
    fill(alert);
    fillDevice(alert);
    return alert.getInstance();
}

void addPair(const std::string& name, CmpiCpp::CmpiInstance (*make)()) {
    stageBroker();
    addScopedRow(name + "/library", [make] {
        auto instance = make();
        benchmark::DoNotOptimize(instance);
    });
    const cimhost::CallScope scope;
    addScopedRow(name + "/anchor", [plain = PlainAlert(propertiesOf(make().toCMPI()))] {
        auto* instance = plain.make();
        benchmark::DoNotOptimize(instance);
    });
}

}  // namespace

void addIndicationRows() {
    addPair("h1/standard alert", standardAlert);
    addPair("h1/alert that tells of the server", serverAlert);
}
