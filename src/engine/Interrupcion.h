#pragma once

/// The request to end, from SIGTERM or SIGINT. A command looks at `pedida` between two blocks of work and leaves
/// everything whole; one that is inside a call that cannot be cut short (deriving a key) is ended from outside.
namespace vellora::motor::Interrupcion
{

/// Exit status of a command that ended because it was asked to.
constexpr int estado = 143;

/// To be called once, before any other thread is started: they inherit the blocked signals.
void vigilar();
/// Any thread.
bool pedida();

} // namespace vellora::motor::Interrupcion
