"""The performance table: rows of data, measuring, and the page that is made of the results."""
