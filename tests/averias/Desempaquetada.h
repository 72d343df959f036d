#pragma once

#include "extraction/Extraccion.h"
#include "support/CopiaDePrueba.h"

/// The phone's files as the engine lays them out, straight from its contents.
inline bool desempaquetar(const CopiaDePrueba &copias, const QString &en)
{
    const auto dominios = copias.telefono() + QStringLiteral("/dominios");
    const auto whatsapp = QStringLiteral("AppDomainGroup-group.net.whatsapp.WhatsApp.shared/");
    const auto grabadora = QStringLiteral("AppDomainGroup-group.com.apple.VoiceMemos.shared/Recordings/");
    QDirIterator recorrido(dominios, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    bool bien = true;
    while (recorrido.hasNext()) {
        const auto fichero = recorrido.next();
        auto nombre = fichero.mid(dominios.size() + 1);
        nombre.replace(whatsapp + QStringLiteral("Message/"), QStringLiteral("WhatsApp/"));
        nombre.replace(whatsapp, QStringLiteral("WhatsApp/"));
        nombre.replace(grabadora, QStringLiteral("Grabadora/"));
        const auto destino = en + QLatin1Char('/') + nombre;
        QDir().mkpath(QFileInfo(destino).path());
        bien = QFile::copy(fichero, destino) && bien;
    }
    return bien;
}
