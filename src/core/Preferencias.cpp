#include "core/Preferencias.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace vellora::Preferencias
{

namespace
{

QSettings ajustes()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, u"vellora"_s, u"vellora"_s);
}

} // namespace

QStringList lista(const QString &clave)
{
    const auto valor = ajustes().value(clave);
    // One entry comes back from the file as a text, so a text is a list of one.
    const auto tipo = valor.typeId();
    return tipo == QMetaType::QStringList || tipo == QMetaType::QString ? valor.toStringList() : QStringList();
}

void ponLista(const QString &clave, const QStringList &valor)
{
    ajustes().setValue(clave, valor);
}

QString texto(const QString &clave, const QString &porDefecto)
{
    return ajustes().value(clave, porDefecto).toString();
}

void ponTexto(const QString &clave, const QString &valor)
{
    ajustes().setValue(clave, valor);
}

bool logico(const QString &clave, bool porDefecto)
{
    return ajustes().value(clave, porDefecto).toString() == "true"_L1;
}

void ponLogico(const QString &clave, bool valor)
{
    ajustes().setValue(clave, valor);
}

} // namespace vellora::Preferencias
