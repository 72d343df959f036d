#pragma once

#include <QString>

/// The program once had another name; what it kept then is moved to where it stands now.
namespace vellora::Migracion
{

/// Moves "Nodria" to "Vellora" in the home folder and in the folder of application data, each only when the old one
/// exists and the new one does not. A failure leaves the old folder where it was. Before anything else uses them.
void alArrancar();

/// The same for one pair of folders.
void mover(const QString &viejo, const QString &nuevo);

} // namespace vellora::Migracion
