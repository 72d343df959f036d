#include "session/Migracion.h"

#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vellora::Migracion
{

void alArrancar()
{
    const auto datos = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    for (const auto &raiz : {QDir::homePath(), datos})
        mover(raiz + u"/Nodria"_s, raiz + u"/Vellora"_s);
}

void mover(const QString &viejo, const QString &nuevo)
{
    if (QFileInfo::exists(viejo) && !QFileInfo::exists(nuevo))
        QDir().rename(viejo, nuevo);
}

} // namespace vellora::Migracion
