#pragma once

#include <chrono>

namespace vellora::motor
{

/// While one lives, the phone is being asked something. A phone that goes silent, or announces more than it sends,
/// would hold the library for 30 s at each of several questions in a row; here the first one that takes too long ends
/// every connection of this process with usbmuxd, so that the library's calls fail in order and the command can say how
/// far it came. Any thread.
class Plazo
{
public:
    static constexpr std::chrono::seconds habitual{10};
    /// For what keeps an honest phone busy, such as emptying a folder of thousands: the library's own patience.
    static constexpr std::chrono::seconds largo{30};

    explicit Plazo(std::chrono::seconds cuanto = habitual);
    ~Plazo();
    Plazo(const Plazo &) = delete;
    Plazo &operator=(const Plazo &) = delete;

    /// The phone was given up once: it is not asked again.
    static bool vencido();

private:
    int numero;
};

} // namespace vellora::motor
