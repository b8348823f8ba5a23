// What a control stores with its form.
#pragma once

#include <QVariant>
#include <map>
#include <string>

namespace varnel::window {

/// Values by property name. A value that equals its default is not stored.
class PropertyBag {
public:
    template <class T>
    T ReadProperty(const std::string& name, const T& standard) const {
        const auto found = values_.find(name);
        return found == values_.end() ? standard : found->second.value<T>();
    }
    template <class T>
    void WriteProperty(const std::string& name, const T& value, const T& standard) {
        if (value == standard) {
            values_.erase(name);
        } else {
            values_[name] = QVariant::fromValue(value);
        }
    }
    const std::map<std::string, QVariant>& Values() const { return values_; }

private:
    std::map<std::string, QVariant> values_;
};

}  // namespace varnel::window
