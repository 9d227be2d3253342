namespace cpp calls

service Echo {
    binary echo(1: binary bytes)
}
