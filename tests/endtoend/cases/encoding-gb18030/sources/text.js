// 中文
var text = "㐀 中文 😀" ;
