#include "app/nameForm.h"

#include "platform/clock.h"
#include "text/decimal.h"
#include "text/oleDate.h"

namespace vellums {

NameForm nameForm(const Notebook& notebook, std::u16string_view marker)
{
    using text::decimal;
    const text::LocalTime now = platform::localNow();
    NameForm form;
    if (marker == kDatabaseMarker) {
        form.caption = notebook.say(u"New Database", u"数据库名称");
        form.label = notebook.say(u"New database file name:", u"请指定数据库名称:");
    } else {
        form.caption = notebook.say(u"New Table", u"数据表名称");
        form.label = notebook.say(u"New table name:", u"请指定数据表名称:");
    }
    form.text = decimal(now.month, 2) + decimal(now.day, 2) + decimal(now.hour, 2) + decimal(now.minute, 2) +
        decimal(now.second, 2);
    form.accept = notebook.say(u"&OK", u"确定(&O)");
    form.cancel = notebook.say(u"&Cancel", u"取消(&C)");
    return form;
}

} // namespace vellums
