/* Another program's reader: adds every card of a vCard file to the desktop's address book. Ends with 0 when all went in. */
#include <libebook/libebook.h>

int main(int argc, char **argv)
{
    gchar *todo = NULL;
    GError *fallo = NULL;
    if (argc != 2 || !g_file_get_contents(argv[1], &todo, NULL, &fallo))
        return 2;
    ESourceRegistry *registro = e_source_registry_new_sync(NULL, &fallo);
    ESource *fuente = registro ? e_source_registry_ref_builtin_address_book(registro) : NULL;
    EClient *libreta = fuente ? e_book_client_connect_sync(fuente, (guint32)-1, NULL, &fallo) : NULL;
    if (libreta == NULL)
        return 3;
    gchar **tarjetas = g_strsplit(todo, "\r\nEND:VCARD\r\n", -1);
    int malas = 0;
    for (gchar **una = tarjetas; *una != NULL; ++una) {
        if (**una == '\0')
            continue;
        gchar *entera = g_strconcat(*una, "\r\nEND:VCARD\r\n", NULL);
        EContact *contacto = e_contact_new_from_vcard(entera);
        if (!e_book_client_add_contact_sync(E_BOOK_CLIENT(libreta), contacto, E_BOOK_OPERATION_FLAG_NONE, NULL, NULL,
                                            &fallo))
            ++malas;
        g_object_unref(contacto);
        g_free(entera);
    }
    g_strfreev(tarjetas);
    g_free(todo);
    return malas > 0 ? 1 : 0;
}
