// Message catalogs. None is found yet: the default text is what every lookup gives.
#include <olvex/Catalog.h>

ucv_cat_t *ucv_catopen(const char *, int, const char *)
{
    return nullptr;
}

const char *ucv_catgets(ucv_cat_t *, int, int, const char *defaultText, uc_ch_t *)
{
    return defaultText;
}

int ucv_catclose(ucv_cat_t *)
{
    return -1;
}
