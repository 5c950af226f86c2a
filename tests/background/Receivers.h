#pragma once

#include <zvutil/signalling/basic_receiver.h>

#include <QTest>

#include <functional>
#include <memory>
#include <utility>

namespace zvtest {

using Receiver = zvutil::signalling::parameterised_abstract_receiver<>;
using Registration = std::shared_ptr<Receiver>;

inline std::unique_ptr<Receiver> receiverOf(std::function<void()> callable)
{
    return std::make_unique<zvutil::signalling::basic_receiver<std::function<void()>>>(
        std::move(callable));
}

} // namespace zvtest
