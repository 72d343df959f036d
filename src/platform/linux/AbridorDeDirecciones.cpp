// GLib's headers have members named as Qt's keywords.
#include "platform/AbridorDeDirecciones.h"

#include <QProcess>

#include <gio/gio.h>

namespace vellora
{

void abrirDireccion(const QUrl &direccion)
{
    QProcess::startDetached(QStringLiteral("xdg-open"), {direccion.toString(QUrl::FullyEncoded)});
}

bool hayQuienAbra(const QString &esquema)
{
    GAppInfo *programa = g_app_info_get_default_for_uri_scheme(esquema.toUtf8().constData());
    if (programa == nullptr)
        return false;
    g_object_unref(programa);
    return true;
}

} // namespace vellora
