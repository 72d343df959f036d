#include "extraction/Contacto.h"

#include "core/EscritorDeTexto.h"
#include "core/Formato.h"
#include "extraction/Extraccion.h"
#include "extraction/Renglones.h"

#include <QCollator>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

QString Contacto::comoSeLlama() const
{
    auto entero = (nombre + u' ' + apellidos).trimmed();
    if (!entero.isEmpty())
        return entero;
    return empresa.isEmpty() ? u"Sin nombre"_s : empresa;
}

namespace Extraccion
{

namespace
{

const auto libreta = u"AddressBook.sqlitedb"_s;
constexpr auto ordenPersonas = "ORDER BY p.Last, p.First";

bool esTelefono(const QString &valor, const QString &propiedad)
{
    // Kinds of value in the address book: 3 a telephone, 4 an address; some versions number them otherwise.
    return propiedad == "3"_L1 || propiedad == "4"_L1 || valor.front().isDigit() || valor.front() == u'+';
}

void anadirValor(Contacto &persona, const QString &crudo, const QString &propiedad)
{
    const auto valor = crudo.trimmed();
    if (valor.isEmpty())
        return;
    const bool esCorreo = valor.contains(u'@');
    if (!esCorreo && !esTelefono(valor, propiedad))
        return; // a web address, a date
    auto &lista = esCorreo ? persona.correos : persona.telefonos;
    if (!lista.contains(valor))
        lista << valor;
}

/// A value of a vCard (RFC 2426, section 4): what would end it is written with a backslash.
QString valorDeVCard(QString texto)
{
    return texto.replace(u'\\', u"\\\\"_s)
        .replace(u';', u"\\;"_s)
        .replace(u',', u"\\,"_s)
        .remove(u'\r')
        .replace(u'\n', u"\\n"_s);
}

QString campo(QString texto)
{
    return texto.replace(u';', u',').replace(u'\n', u' ');
}

bool escribirEn(const QString &fichero, const QString &cabecera, const QList<Contacto> &contactos,
                QString (*porContacto)(const Contacto &))
{
    const QFileInfo info(fichero);
    auto carpeta = CarpetaDeDestino::abrir(info.absolutePath());
    if (!carpeta)
        return false;
    EscritorDeTexto salida(*carpeta, info.fileName().toUtf8());
    salida << cabecera.toUtf8();
    for (const auto &contacto : contactos)
        salida << porContacto(contacto).toUtf8();
    return salida.cerrar();
}

} // namespace

std::optional<QString> contactos(const QString &desde, const QString &a)
{
    const Tabla tabla{u"Contactos.csv"_s, "Nombre;Apellidos;Empresa;Teléfono o correo\n",
                      siempre("SELECT IFNULL(p.First,''), IFNULL(p.Last,''), IFNULL(p.Organization,''), "
                              "IFNULL(v.value,'') "
                              "FROM ABPerson p LEFT JOIN ABMultiValue v ON v.record_id = p.ROWID"),
                      ordenPersonas, [](QByteArray &linea, const Fila &fila) {
                          for (int columna = 0; columna < 4; ++columna) {
                              if (columna > 0)
                                  linea += ';';
                              Renglones::ponerEnUno(linea, fila.utf8(columna));
                          }
                          linea += '\n';
                      }};
    const auto filas = escribirTabla(tabla, {buscarPublico(libreta, desde)}, a);
    return filas > 0 ? std::optional(u"Contactos: %1 personas (Contactos.csv)"_s.arg(filas)) : std::nullopt;
}

QList<Contacto> leerContactos(const QString &desde)
{
    QList<Contacto> lista;
    const auto base = abrirPublico(buscarPublico(libreta, desde));
    if (!base)
        return lista;
    QHash<qint64, qsizetype> porFila;
    base->porCadaFila("SELECT p.ROWID, IFNULL(p.First,''), IFNULL(p.Last,''), IFNULL(p.Organization,''), "
                      "IFNULL(v.value,''), IFNULL(v.property,0), IFNULL(p.Note,''), IFNULL(p.Nickname,'') "
                      "FROM ABPerson p LEFT JOIN ABMultiValue v ON v.record_id = p.ROWID",
                      ordenPersonas, [&](const Fila &fila) {
                          const auto id = fila.entero(0);
                          if (!porFila.contains(id)) {
                              porFila.insert(id, lista.size());
                              lista << Contacto{id, fila.texto(1), fila.texto(2), fila.texto(3), {}, {}, fila.texto(6)};
                          }
                          anadirValor(lista[porFila.value(id)], fila.texto(4), fila.texto(5));
                      });
    QCollator orden(Formato::espanol());
    orden.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(lista.begin(), lista.end(), [&](const Contacto &uno, const Contacto &otro) {
        return orden.compare(uno.comoSeLlama(), otro.comoSeLlama()) < 0;
    });
    return lista;
}

QHash<qint64, QByteArray> fotosDeContactos(const QString &desde)
{
    QHash<qint64, QByteArray> fotos;
    const auto base = abrirPublico(buscarPublico(u"AddressBookImages.sqlitedb"_s, desde));
    if (!base)
        return fotos;
    base->porCadaFila("SELECT record_id, data, 1 AS prio FROM ABFullSizeImage "
                      "UNION ALL SELECT record_id, data, 0 AS prio FROM ABThumbnailImage",
                      "ORDER BY prio DESC", [&](const Fila &fila) {
                          const auto bytes = fila.datos(1);
                          if (!bytes.isEmpty() && !fotos.contains(fila.entero(0)))
                              fotos.insert(fila.entero(0), QByteArray(bytes.constData(), bytes.size()));
                      });
    return fotos;
}

bool guardarVCard(const QString &en, const QList<Contacto> &contactos)
{
    return escribirEn(en, {}, contactos, [](const Contacto &contacto) {
        auto tarjeta = u"BEGIN:VCARD\r\nVERSION:3.0\r\n"_s;
        tarjeta += u"N:"_s + valorDeVCard(contacto.apellidos) + u';' + valorDeVCard(contacto.nombre) + u";;;\r\n"_s;
        tarjeta += u"FN:"_s + valorDeVCard(contacto.comoSeLlama()) + u"\r\n"_s;
        if (!contacto.empresa.isEmpty())
            tarjeta += u"ORG:"_s + valorDeVCard(contacto.empresa) + u"\r\n"_s;
        for (const auto &telefono : contacto.telefonos)
            tarjeta += u"TEL;TYPE=CELL:"_s + valorDeVCard(telefono) + u"\r\n"_s;
        for (const auto &correo : contacto.correos)
            tarjeta += u"EMAIL:"_s + valorDeVCard(correo) + u"\r\n"_s;
        return tarjeta + u"END:VCARD\r\n"_s;
    });
}

bool guardarContactosCSV(const QString &en, const QList<Contacto> &contactos)
{
    return escribirEn(en, u"Nombre;Apellidos;Empresa;Teléfonos;Correos\n"_s, contactos, [](const Contacto &contacto) {
        const QStringList columnas{campo(contacto.nombre), campo(contacto.apellidos), campo(contacto.empresa),
                                   contacto.telefonos.join(u" / "_s), contacto.correos.join(u" / "_s)};
        return columnas.join(u';') + u'\n';
    });
}

} // namespace Extraccion

} // namespace vellora
