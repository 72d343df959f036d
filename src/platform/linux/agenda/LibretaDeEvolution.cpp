// The desktop's address book by Evolution Data Server. GLib's headers have members named as Qt's keywords.
#include "platform/AgendaDelMac.h"

#include <algorithm>
#include <libebook/libebook.h>
#include <memory>

namespace
{

using vellora::FichaDeAgenda;
using vellora::LibretaDelEscritorio;

struct Soltar {
    void operator()(void *objeto) const { g_object_unref(objeto); }
};
template <typename Objeto> using Objetos = std::unique_ptr<Objeto, Soltar>;

class Fallo
{
public:
    ~Fallo() { g_clear_error(&error); }
    GError **operator&()
    {
        g_clear_error(&error);
        return &error;
    }

private:
    GError *error = nullptr;
};

QString campo(EContact *contacto, EContactField cual)
{
    return QString::fromUtf8(static_cast<const char *>(e_contact_get_const(contacto, cual)));
}

/// Values of all attributes of that name ("TEL", "EMAIL").
QStringList valores(EContact *contacto, const char *nombre)
{
    QStringList lista;
    for (GList *uno = e_vcard_get_attributes(E_VCARD(contacto)); uno != nullptr; uno = uno->next) {
        auto *atributo = static_cast<EVCardAttribute *>(uno->data);
        if (g_ascii_strcasecmp(e_vcard_attribute_get_name(atributo), nombre) != 0)
            continue;
        char *valor = e_vcard_attribute_get_value(atributo);
        if (valor != nullptr && *valor != '\0')
            lista << QString::fromUtf8(valor);
        g_free(valor);
    }
    return lista;
}

void ponerTexto(EContact *contacto, EContactField cual, const QString &texto)
{
    const auto bytes = texto.toUtf8();
    // The address book takes a pointer to no text for "none".
    e_contact_set(contacto, cual, texto.isEmpty() ? nullptr : const_cast<char *>(bytes.constData()));
}

void ponerNombres(EContact *contacto, const FichaDeAgenda &ficha)
{
    ponerTexto(contacto, E_CONTACT_GIVEN_NAME, ficha.nombre);
    ponerTexto(contacto, E_CONTACT_FAMILY_NAME, ficha.apellidos);
    ponerTexto(contacto, E_CONTACT_ORG, ficha.empresa);
    const auto entero = (ficha.nombre + QLatin1Char(' ') + ficha.apellidos).trimmed();
    // The name that lists show does not follow the two by itself.
    ponerTexto(contacto, E_CONTACT_FULL_NAME, entero.isEmpty() ? ficha.empresa : entero);
    ponerTexto(contacto, E_CONTACT_GIVEN_NAME, ficha.nombre);
    ponerTexto(contacto, E_CONTACT_FAMILY_NAME, ficha.apellidos);
    ponerTexto(contacto, E_CONTACT_FILE_AS, entero.isEmpty() ? ficha.empresa : entero);
}

void anadirValores(EContact *contacto, const char *nombre, const char *tipo, const QStringList &lista)
{
    for (const auto &valor : lista) {
        auto *atributo = e_vcard_attribute_new(nullptr, nombre);
        e_vcard_add_attribute_with_value(E_VCARD(contacto), atributo, valor.toUtf8().constData());
        e_vcard_attribute_add_param_with_value(atributo, e_vcard_attribute_param_new(EVC_TYPE), tipo);
    }
}

class LibretaDeEvolution : public LibretaDelEscritorio
{
public:
    bool abrir() override
    {
        if (cliente)
            return true;
        Fallo fallo;
        const Objetos<ESourceRegistry> registro(e_source_registry_new_sync(nullptr, &fallo));
        if (!registro)
            return false;
        // Where the service is missing the registry is made all the same, empty.
        const Objetos<ESource> fuente(e_source_registry_ref_builtin_address_book(registro.get()));
        if (!fuente)
            return false;
        // A time of waiting would be waited out in full for the book of this computer.
        constexpr auto sinEsperar = static_cast<guint32>(-1);
        auto *abierto = e_book_client_connect_sync(fuente.get(), sinEsperar, nullptr, &fallo);
        cliente.reset(reinterpret_cast<EBookClient *>(abierto));
        return cliente != nullptr;
    }

    bool anadir(const FichaDeAgenda &ficha) override
    {
        const Objetos<EContact> contacto(e_contact_new());
        ponerNombres(contacto.get(), ficha);
        anadirValores(contacto.get(), EVC_TEL, "CELL", ficha.telefonos);
        anadirValores(contacto.get(), EVC_EMAIL, "HOME", ficha.correos);
        Fallo fallo;
        char *id = nullptr;
        const bool bien = e_book_client_add_contact_sync(cliente.get(), contacto.get(), E_BOOK_OPERATION_FLAG_NONE, &id,
                                                         nullptr, &fallo) != FALSE;
        g_free(id);
        return despues(bien);
    }

    std::optional<QList<Persona>> todas() override
    {
        Fallo fallo;
        GSList *contactos = nullptr;
        if (!despues(e_book_client_get_contacts_sync(cliente.get(), "(contains \"x-evolution-any-field\" \"\")",
                                                     &contactos, nullptr, &fallo) != FALSE))
            return {};
        QList<Persona> personas;
        for (const GSList *uno = contactos; uno != nullptr; uno = uno->next) {
            auto *contacto = E_CONTACT(uno->data);
            const FichaDeAgenda ficha{campo(contacto, E_CONTACT_GIVEN_NAME), campo(contacto, E_CONTACT_FAMILY_NAME),
                                      campo(contacto, E_CONTACT_ORG), valores(contacto, EVC_TEL),
                                      valores(contacto, EVC_EMAIL)};
            personas.append({campo(contacto, E_CONTACT_UID), ficha});
        }
        g_slist_free_full(contactos, g_object_unref);
        return personas;
    }

    bool cambiar(const QString &id, const FichaDeAgenda &ficha, const FichaDeAgenda &sobran) override
    {
        Fallo fallo;
        EContact *leido = nullptr;
        if (e_book_client_get_contact_sync(cliente.get(), id.toUtf8().constData(), &leido, nullptr, &fallo) == FALSE)
            return despues(false);
        const Objetos<EContact> contacto(leido);
        ponerNombres(contacto.get(), ficha);
        cambiarValores(contacto.get(), EVC_TEL, "CELL", sobran.telefonos, ficha.telefonos,
                       [](const QString &uno, const QString &otro) {
                           return vellora::AgendaDelMac::soloCifras(uno) == vellora::AgendaDelMac::soloCifras(otro);
                       });
        cambiarValores(
            contacto.get(), EVC_EMAIL, "HOME", sobran.correos, ficha.correos,
            [](const QString &uno, const QString &otro) { return uno.compare(otro, Qt::CaseInsensitive) == 0; });
        return despues(e_book_client_modify_contact_sync(cliente.get(), contacto.get(), E_BOOK_OPERATION_FLAG_NONE,
                                                         nullptr, &fallo) != FALSE);
    }

    bool quitar(const QString &id) override
    {
        Fallo fallo;
        return despues(e_book_client_remove_contact_by_uid_sync(cliente.get(), id.toUtf8().constData(),
                                                                E_BOOK_OPERATION_FLAG_NONE, nullptr, &fallo) != FALSE);
    }

private:
    /// Values that the record had and keeps stay as they are, with what the owner's other programs noted on them.
    template <typename Igual>
    static void cambiarValores(EContact *contacto, const char *nombre, const char *tipo, const QStringList &antes,
                               const QStringList &ahora, const Igual &igual)
    {
        const auto esta = [&igual](const QStringList &lista, const QString &valor) {
            return std::any_of(lista.begin(), lista.end(), [&](const QString &uno) { return igual(uno, valor); });
        };
        QStringList nuevos;
        const auto hay = valores(contacto, nombre);
        std::copy_if(ahora.begin(), ahora.end(), std::back_inserter(nuevos),
                     [&](const QString &valor) { return !esta(hay, valor); });
        for (GList *uno = e_vcard_get_attributes(E_VCARD(contacto)); uno != nullptr;) {
            auto *atributo = static_cast<EVCardAttribute *>(uno->data);
            uno = uno->next;
            if (g_ascii_strcasecmp(e_vcard_attribute_get_name(atributo), nombre) != 0)
                continue;
            char *suyo = e_vcard_attribute_get_value(atributo);
            const auto valor = QString::fromUtf8(suyo);
            g_free(suyo);
            if (esta(antes, valor) && !esta(ahora, valor))
                e_vcard_remove_attribute(E_VCARD(contacto), atributo);
        }
        anadirValores(contacto, nombre, tipo, nuevos);
    }

    /// A service that has gone is looked for again next time.
    bool despues(bool bien)
    {
        if (!bien)
            cliente.reset();
        return bien;
    }

    Objetos<EBookClient> cliente;
};

} // namespace

extern "C" Q_DECL_EXPORT LibretaDelEscritorio *vellora_agenda()
{
    return new LibretaDeEvolution;
}
