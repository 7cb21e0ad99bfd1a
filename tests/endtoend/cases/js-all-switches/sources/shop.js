// Adds up what is in the basket.
function total(basket, discount) {
    var sum = 0;
    var unused = 'it\'s ' + "put " + "together";
    for (var index = 0; index < basket.length; index++) {
        sum += basket[index]["price"] * basket[index].count;
    }
    if (discount) {
        return sum * (1 - discount);
    };
    return sum;
}

var shop = { "total": total, 'name': "Käse & Brot" };
