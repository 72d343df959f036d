#include "backups/VigilanteDelDisco.h"

#include "core/SegundoPlano.h"

#include <QFile>

#include <sys/statvfs.h>

namespace vellora
{

namespace
{

/// True only when it is known to be so.
bool estaLleno(const QString &carpeta)
{
    struct statvfs estado = {};
    return statvfs(QFile::encodeName(carpeta).constData(), &estado) == 0 && estado.f_blocks > 0 &&
           estado.f_bavail * estado.f_frsize < static_cast<quint64>(VigilanteDelDisco::sitioMinimo);
}

} // namespace

VigilanteDelDisco::VigilanteDelDisco(QString laCarpeta, QObject *padre) : QObject(padre), carpeta(std::move(laCarpeta))
{
    connect(&reloj, &QTimer::timeout, this, &VigilanteDelDisco::mirar);
}

void VigilanteDelDisco::mirar()
{
    if (mirando)
        return; // a slow disk answers late
    mirando = true;
    enSegundoPlano(
        this, [carpeta = carpeta] { return estaLleno(carpeta); },
        [this](bool sinSitio) {
            mirando = false;
            if (!sinSitio || !reloj.isActive())
                return;
            parar();
            emit lleno();
        });
}

} // namespace vellora
