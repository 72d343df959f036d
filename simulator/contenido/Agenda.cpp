#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Esquemas.h"
#include "contenido/Pintor.h"

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

enum Propiedad { Telefono = 3, Correo = 4, Direccion = 5, Fecha = 12, Web = 22 };
enum Etiqueta { Movil = 1, Casa = 2, Trabajo = 3, Aniversario = 4, PaginaWeb = 5, ElPueblo = 6 };

std::optional<QString> oNada(const QString &texto)
{
    return texto.isEmpty() ? std::nullopt : std::optional(texto);
}

class EscritorDeAgenda
{
public:
    explicit EscritorDeAgenda(Contexto &contexto)
        : c(contexto)
        , a(contexto.azar("agenda"))
        , base(c.dominio("HomeDomain", u"Library/AddressBook/AddressBook.sqlitedb"_s))
    {
        base.ejecuta(esquemaAgenda);
        base.ejecuta(
            "INSERT INTO ABAccount (AccountIdentifier) VALUES ('4C1E9A00-0000-4000-8000-000000000001');"
            "INSERT INTO ABStore (Name, Type, AccountID, Enabled, guid) VALUES ('Contactos', 16, 1, 1, "
            "'4C1E9A00-0000-4000-8000-000000000002');"
            "INSERT INTO ABGroup (Name, StoreID, guid) VALUES ('Familia', 1, '4C1E9A00-0000-4000-8000-000000000003')");
    }
    void mete(const Persona &p);
    void termina()
    {
        base.ejecuta("INSERT INTO ABGroupMembers (group_id, member_type, member_id) VALUES (1, 0, 2), (1, 0, 6)");
        base.empiezaDiario(true);
        Persona nueva;
        nueva.nombre = u"Apuntada"_s;
        nueva.apellidos = u"Ahora Mismo"_s;
        nueva.telefonos << u"612 345 678"_s;
        mete(nueva);
        c.recoge(base);
    }

private:
    qint64 valor(qint64 persona, Propiedad propiedad, Etiqueta etiqueta, const std::optional<QString> &texto)
    {
        return Insercion(base, "ABMultiValue", "record_id, property, identifier, label, value, guid")
            .mete(persona, static_cast<int>(propiedad), m_identificador++, static_cast<int>(etiqueta), texto, a.uuid());
    }

    Contexto &c;
    Azar a;
    Base base;
    int m_identificador = 0;
};

void EscritorDeAgenda::mete(const Persona &p)
{
    const auto creada = ahoraDelTelefono - principioApple - a.entero(1'000'000, 90'000'000);
    const auto fila =
        Insercion(base, "ABPerson",
                  "First, Last, Organization, Note, Kind, Birthday, Nickname, FirstSort, LastSort, CreationDate, "
                  "ModificationDate, "
                  "CompositeNameFallback, StoreID, DisplayName, FirstSortSection, LastSortSection, guid")
            .mete(oNada(p.nombre), oNada(p.apellidos), oNada(p.empresa), oNada(p.nota),
                  p.nombre.isEmpty() && !p.empresa.isEmpty() ? 1 : 0,
                  p.cumple ? std::optional(QString::number(p.cumple - principioApple)) : std::nullopt, oNada(p.apodo),
                  oNada(p.nombre), oNada(p.apellidos), creada, creada + 900, nullptr, 1, nullptr,
                  p.nombre.left(1).toUpper(), p.apellidos.left(1).toUpper(), a.uuid() + u":ABPerson"_s);
    for (qsizetype i = 0; i < p.telefonos.size(); ++i)
        valor(fila, Telefono, i == 0 ? Movil : ElPueblo, p.telefonos[i]);
    for (const auto &correo : p.correos)
        valor(fila, Correo, Casa, correo);
    // The last of the fixed people keeps a mail address where the telephone goes.
    if (p.nombre == u"Correo"_s)
        valor(fila, Telefono, Movil, u"otro.raro@correo.example"_s);
    if (fila % 9 == 1) {
        valor(fila, Web, PaginaWeb, u"https://persona%1.example"_s.arg(fila));
        valor(fila, Fecha, Aniversario, QString::number(creada - 300'000'000));
    }
    if (!p.ciudad.isEmpty() && fila % 3 == 1) {
        const auto direccion = valor(fila, Direccion, Casa, std::nullopt);
        Insercion entrada(base, "ABMultiValueEntry", "parent_id, key, value");
        entrada.mete(direccion, 2, u"Calle Mayor, %1, 3.º B"_s.arg(fila));
        entrada.mete(direccion, 3, a.cifras(5));
        entrada.mete(direccion, 4, p.ciudad);
        entrada.mete(direccion, 1, "España");
    }
}

void ponRetratos(Contexto &c)
{
    Base base(c.dominio("HomeDomain", u"Library/AddressBook/AddressBookImages.sqlitedb"_s));
    base.ejecuta(esquemaFotosAgenda);
    Insercion entera(base, "ABFullSizeImage", "record_id, crop_x, crop_y, crop_width, crop_height, data");
    Insercion mini(base, "ABThumbnailImage", "record_id, format, derived_from_format, data");
    const qint64 cuantas = c.segun(6, 40, 120);
    for (qint64 persona = 1; persona <= cuantas; persona += 2) {
        const auto motivo = static_cast<int>(persona);
        mini.mete(persona, 0, 5, comoJpeg(pintaRetrato(motivo, 160), 85));
        if (persona % 4 == 1)
            entera.mete(persona, 0, 0, 640, 640, comoJpeg(pintaRetrato(motivo, 640), 88));
    }
    entera.mete(2, 0, 0, 0, 0, QByteArray());
    mini.mete(4, 0, 5, QByteArray("esto no es una imagen"));
    c.recoge(base);
}

} // namespace

void ponAgenda(Contexto &c)
{
    {
        EscritorDeAgenda escritor(c);
        for (const auto &p : c.gente)
            escritor.mete(p);
        escritor.termina();
    }
    ponRetratos(c);
}

} // namespace simulado
