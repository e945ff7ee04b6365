#include "resolvers/terabytez/TerabytezScripts.h"

using namespace Qt::StringLiterals;

namespace vormel::terabytezScripts {

QString html()
{
    return u"document.documentElement.innerHTML"_s;
}

QString heading()
{
    return u"(document.querySelector('h1,h2')||{}).textContent||''"_s;
}

QString hasElement(const QString& selector)
{
    return u"!!document.querySelector(\"%1\")"_s.arg(QString(selector).replace(u'"', u"\\\""_s));
}

QString submitForm()
{
    return uR"((function(){
    var f=document.querySelector('form[name="F1"]')||document.querySelector('form');
    if(!f)return false;
    var hid=f.querySelectorAll('input[type="hidden"]');
    var hasOp=false;
    for(var i=0;i<hid.length;i++){if(hid[i].name==='op'){hasOp=true;break;}}
    if(!hasOp){
        var n=document.createElement('input');
        n.type='hidden';n.name='op';n.value='download2';
        f.appendChild(n);
    }
    f.submit();return true;
})();)"_s;
}

QString openAccount(const TerabytezSite& site)
{
    return uR"((function(){
    var a=document.querySelector('a[href*="/account"]');
    if(a){a.click();return true;}
    window.location.href='%1';
    return false;
})();)"_s.arg(site.accountUrl().absoluteString());
}

} // namespace vormel::terabytezScripts
